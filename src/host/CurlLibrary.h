#pragma once

#include <curl/curl.h>

#include "foundation/Result.h"

namespace trimora::host {

/// What CurlTransport uses of libcurl, which is loaded and set up for the first who asks. The members have
/// the library's own names without their "curl_". Any thread.
struct CurlLibrary {
    decltype(&::curl_easy_init) easy_init = nullptr;
    decltype(&::curl_easy_cleanup) easy_cleanup = nullptr;
    decltype(&::curl_easy_getinfo) easy_getinfo = nullptr;
    decltype(&::curl_easy_setopt) easy_setopt = nullptr;
    decltype(&::curl_easy_strerror) easy_strerror = nullptr;
    decltype(&::curl_multi_add_handle) multi_add_handle = nullptr;
    decltype(&::curl_multi_cleanup) multi_cleanup = nullptr;
    decltype(&::curl_multi_info_read) multi_info_read = nullptr;
    decltype(&::curl_multi_init) multi_init = nullptr;
    decltype(&::curl_multi_perform) multi_perform = nullptr;
    decltype(&::curl_multi_poll) multi_poll = nullptr;
    decltype(&::curl_multi_remove_handle) multi_remove_handle = nullptr;
    decltype(&::curl_multi_wakeup) multi_wakeup = nullptr;
    decltype(&::curl_slist_append) slist_append = nullptr;
    decltype(&::curl_slist_free_all) slist_free_all = nullptr;

    /// An error where the library is not there or cannot be set up; the next call tries again.
    [[nodiscard]] static foundation::Result<const CurlLibrary*> get();
};

}  // namespace trimora::host
