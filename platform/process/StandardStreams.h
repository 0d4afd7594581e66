#pragma once

namespace orlimo {

/// Makes the three standard streams safe to write to for the life of the process: a closed stream
/// is opened on /dev/null, so that no file opened later receives log lines under its number, and
/// SIGPIPE is ignored. Call first thing in `main`.
void prepareStandardStreams();

} // namespace orlimo
