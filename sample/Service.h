#pragma once

#include "sample/SampleStore.h"

#include <iosfwd>

namespace orlimo::sample {

/// Carries out the commands that stand on the lines of `input`, one after the other, and answers
/// each with one line on `output` once it is done:
///
/// - text WORDS, body WORDS, immutable WORDS: "committed ROWID", inside a transaction "added
/// ROWID";
/// - begin, spill, truncate, sql STATEMENTS: "ok";
/// - commit: "committed"; rollback: "rolled back";
/// - quit: nothing more, as at the end of the input.
///
/// In words, \n, \t, \\ and \xHH stand for the characters that they stand for in C++. A command
/// that fails is answered "error: " and why. The first line is "ready".
void serve(SampleStore& store, std::istream& input, std::ostream& output);

} // namespace orlimo::sample
