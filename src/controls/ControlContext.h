#pragma once

#include "foundation/Clock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Queues.h"

namespace trimora::controls {

/// What a control is given to live on. Everything referred to lives longer than the control.
struct ControlContext {
    foundation::Clock& clock;          ///< tells animations the time
    foundation::Scheduler& scheduler;  ///< brings their next frame, and waits while a pointer rests
    foundation::SerialQueue& mainQueue;
    foundation::NotificationCenter& notifications;
};

}  // namespace trimora::controls
