// The calls that start one service each, as every form of the start-up code writes them.
#pragma once

#include "generators/objdict/objdictcontext.h"

namespace ObjDict
{

/// For which line a call is made, and whether it says so in its first argument, "canLine".
struct CallForm {
    quint8 line = 0;
    bool namesLine = false;
};

// Each writes its comment, call and check if the project has the service, else nothing. Those of
// objects look for them on the line of the form.
using WriteService = void (*)(Context &context, const CallForm &form);
void initFurtherSdoServers(Context &context, const CallForm &form);
void initUsdoClient(Context &context, const CallForm &form);
void initSdoClients(Context &context, const CallForm &form);
void initErrorControl(Context &context, const CallForm &form);
void initEmcyProducer(Context &context, const CallForm &form);
void initSync(Context &context, const CallForm &form);
void initEmcyConsumer(Context &context, const CallForm &form);
void initTime(Context &context, const CallForm &form);
void initPdos(Context &context, const CallForm &form);
void initSrd(Context &context, const CallForm &form);
void initGfc(Context &context, const CallForm &form);
void initGfcOfLine(Context &context, const CallForm &form); ///< in the words of its own function
void initSrdos(Context &context, const CallForm &form);
void initIsoTp(Context &context, const CallForm &form);
void initIdNego(Context &context, const CallForm &form);
void initGuarding(Context &context, const CallForm &form);
void initLed(Context &context, const CallForm &form);

/// From error control to SRD: the services whose order all forms share.
void initCommonServices(Context &context, const CallForm &form);

/// Check of `retVal` after a call, with \a indent blanks more than the body of a function has.
void addRetValHandling(Context &context, int indent);

/// A call with its check. \a call ends in "("; \a arguments follow the line, if it is named.
void writeCheckedCall(Context &context, const CallForm &form, const char *call,
                      const QString &arguments = QString(), int indent = 0);

/// The words in which the files return an error.
struct ReturnWords {
    const char *value = "        return(retVal);\n";
    const char *invalid = "        return(RET_INVALID_PARAMETER);\n";
};

/// Registers the function that loads parameters, the parameter `pLoadFunction` of the start-up.
void writeLoadParameterBlock(Context &context, const ReturnWords &words = {});

/// Definition of `serviceInitVars`; the words of its first lines differ between the forms.
void writeServiceInitVars(Context &context, const char *start, const char *versionEnd);

// What all protocols share, and UDS; nothing for a project without them. UDS ends in an empty line.
void writeCommonInitVars(Context &context);
void writeUdsStructures(Context &context);
void writeUdsCommonCall(Context &context);
void writeUdsLineCall(Context &context, const CallForm &form);

bool hasNewInitStructure(const Context &context);

/// Rows of a line in `od_assign`.
int countAssignRows(const Context &context, quint8 line);

/// Subindices of a line, those without a row of their own in `od_description` too.
int countSubIndices(const Context &context, quint8 line);

} // namespace ObjDict
