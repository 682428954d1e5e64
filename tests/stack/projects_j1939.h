// Texts of the application of J1939 projects.
#pragma once

#include "tests/stack/projects.h"

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
