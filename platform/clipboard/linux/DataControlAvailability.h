#pragma once

namespace orlimo {

/// What is known of whether a compositor lets programs without a window set the clipboard.
enum class DataControlAvailability {
    offered,
    notOffered, ///< or there is no compositor
    unknown,    ///< a compositor listens, and has not responded in time
};

} // namespace orlimo
