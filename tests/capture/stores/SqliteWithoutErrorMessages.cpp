#include "tests/capture/stores/SqliteWithoutErrorMessages.h"

#include <sqlite3.h>

#include <atomic>

#include <dlfcn.h>

namespace orlimo {

namespace {

std::atomic<bool> silent{false};

} // namespace

SqliteWithoutErrorMessages::SqliteWithoutErrorMessages()
{
    silent = true;
}

SqliteWithoutErrorMessages::~SqliteWithoutErrorMessages()
{
    silent = false;
}

} // namespace orlimo

/// Stands before the library's function of the same name, in this program only.
const char* sqlite3_errmsg(sqlite3* connection)
{
    using Function = const char* (*)(sqlite3*);
    static const auto ofTheLibrary =
        reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sqlite3_errmsg"));
    return orlimo::silent ? nullptr : ofTheLibrary(connection);
}
