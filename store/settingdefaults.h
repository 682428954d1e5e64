// Settings that every project has that was opened, with what they are then.
#pragma once

struct SettingDefault {
    const char *key;
    const char *value;
};

/// The order code of a project that was given none.
inline constexpr const char *kMadeUpOrderCode = "0815-BUY-ME";

// clang-format off
/// Of the description of each line.
inline constexpr SettingDefault kDescriptionDefaults[] = {
    {"BaudRate_10", "0"},  {"BaudRate_20", "0"},  {"BaudRate_50", "0"},
    {"BaudRate_125", "1"}, {"BaudRate_250", "1"},
    {"BaudRate_500", "0"}, {"BaudRate_800", "0"}, {"BaudRate_1000", "0"},
    {"Dummy0001", "0"}, {"Dummy0002", "0"}, {"Dummy0003", "0"}, {"Dummy0004", "0"},
    {"Dummy0005", "0"}, {"Dummy0006", "0"}, {"Dummy0007", "0"},
    {"LSS_Supported", "0"}, {"SelfStarting", "0"},
    {"VendorName", ""}, {"ProductName", ""}, {"CreatedBy", ""}, {"ModifiedBy", ""},
    {"FileVersion", "1"}, {"FileRevision", "1"},
    {"OrderCode", kMadeUpOrderCode},
    {"Granularity", "0"},
    {"Comment", ""}, {"AdditionalSections", ""},
};
// clang-format on

/// Beside the defaults the description of a line may have these.
inline constexpr const char *kCountsOfPdos[] = {"NrOfRXPDO", "NrOfTXPDO"};
