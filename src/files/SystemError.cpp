#include "files/SystemError.h"

#include <string>
#include <system_error>

namespace trimora::files {

foundation::Error systemError(std::string_view what, int number) {
    return {std::string(what) + ": " + std::generic_category().message(number), number};
}

}  // namespace trimora::files
