// One logging category a subsystem. By default nothing of them is shown; see main.cpp. What is
// passed over or fails is information or a warning, what a sound run tells as well is for
// debugging.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcApp)
Q_DECLARE_LOGGING_CATEGORY(lcStore)
Q_DECLARE_LOGGING_CATEGORY(lcImport)
Q_DECLARE_LOGGING_CATEGORY(lcCheck)
Q_DECLARE_LOGGING_CATEGORY(lcGenerator)
