#include "main/Gallery.h"

#include <QApplication>
#include <cstdio>

#include "controls/ControlGallery.h"
#include "foundation/RealTime.h"
#include "platform/QtMainQueue.h"

namespace trimora {

int runGallery() {
    platform::QtMainQueue mainQueue;
    foundation::RealClock clock;
    foundation::RealScheduler scheduler;
    foundation::NotificationCenter notifications;
    controls::ControlGallery gallery({clock, scheduler, mainQueue, notifications},
                                     [](const std::string& line) {
                                         std::puts(line.c_str());
                                         std::fflush(stdout);
                                     });
    gallery.show();
    return QApplication::exec();
}

}  // namespace trimora
