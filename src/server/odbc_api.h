// The calls and types of ODBC. On Windows they are made of the system's own types.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif

#include <sql.h>
#include <sqlext.h>
