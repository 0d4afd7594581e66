#pragma once

#include "platform/files/VnodeSource.h"

namespace orlimo {

/// A vnode source that never reports anything, keeps nothing alive and uses none of the system's
/// limited watches.
class IdleVnodeSource final : public VnodeSource
{
public:
    void setEventHandler(Handler /*handler*/) override {}
    void setCancelHandler(Handler /*handler*/) override {}
    void resume() override {}
    void cancel() override {}
    [[nodiscard]] VnodeEvents data() const override { return 0; }
};

} // namespace orlimo
