#pragma once

namespace orlimo {

/// Makes the three standard streams safe to write to for the whole life of the process: a stream
/// that was closed at the start is opened on nothing, so that no file opened later can receive log
/// lines in its place, and a reader that hangs up no longer ends the process. Call first thing in
/// `main`.
void prepareStandardStreams();

} // namespace orlimo
