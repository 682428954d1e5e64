// The parts of J1939 projects beside those of projects.h, and texts of the application.
#pragma once

#include "tests/stack/projects.h"

inline const QString kGroups = projectPart("groups");
inline const QString kName = projectPart("name");
inline const QString kVariables = projectPart("variables");
inline const QString kModules = projectPart("modules");
inline const QString kSdoServer = projectPart("sdo_server");

/// What no generated file declares, since it is no plain name.
constexpr const char *kAppExpressions = R"(
#ifndef APP_EXPRESSIONS_H
#define APP_EXPRESSIONS_H 1
#include <stdint.h>
struct TANK { uint16_t level; uint8_t flags[2]; };
extern struct TANK tank;
extern uint8_t matrix[2][2];
#endif
)";
/// For object dictionaries.
constexpr const char *kAppCells = R"(
extern UNSIGNED8 cells[8];
extern UNSIGNED24 cells24[8];
#define CELL_OF(n) (&cells[n])
#define CELL24_OF(n) (&cells24[n])
)";
constexpr const char *kAppDefinitions = R"(
struct TANK tank;
uint8_t matrix[2][2];
UNSIGNED8 cells[8];
UNSIGNED24 cells24[8];
)";
