#pragma once

#include "sample/SampleStore.h"

#include <iosfwd>

namespace orlimo::sample {

/// Executes the commands on the lines of `input`, one after the other, and writes one line of
/// response to `output` once each is done:
///
/// - text TEXT, body TEXT, immutable TEXT: "committed ROWID", inside a transaction "added
/// ROWID";
/// - begin, spill, truncate, sql STATEMENTS: "ok";
/// - commit: "committed"; rollback: "rolled back";
/// - quit: none; ends the service, as the end of the input does.
///
/// In texts, \n, \t, \\ and \xHH are escapes as in C++. The response to a command that fails is
/// "error: " and the reason. The first line is "ready".
void serve(SampleStore& store, std::istream& input, std::ostream& output);

} // namespace orlimo::sample
