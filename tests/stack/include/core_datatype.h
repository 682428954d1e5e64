/* Test stand-in: the name under which newer sources ask for the data types. */
#include <co_datatype.h>
