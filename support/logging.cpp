// The logging categories.
#include "support/logging.h"

Q_LOGGING_CATEGORY(lcApp, "tessarine.app")
Q_LOGGING_CATEGORY(lcStore, "tessarine.store")
Q_LOGGING_CATEGORY(lcImport, "tessarine.import")
Q_LOGGING_CATEGORY(lcCheck, "tessarine.check")
Q_LOGGING_CATEGORY(lcGenerator, "tessarine.generator")
