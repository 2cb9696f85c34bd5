#include "host/CurlLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::host {

using foundation::Error;
using foundation::Result;

namespace {

Result<CurlLibrary> load() {
    decltype(&::curl_global_init) globalInit = nullptr;
    auto loaded =
        files::loadFunctions<CurlLibrary>("libcurl.so.4", [&](files::LateFunctions& find, CurlLibrary& made) {
            find("curl_global_init", globalInit);
            find("curl_easy_init", made.easy_init);
            find("curl_easy_cleanup", made.easy_cleanup);
            find("curl_easy_getinfo", made.easy_getinfo);
            find("curl_easy_setopt", made.easy_setopt);
            find("curl_easy_strerror", made.easy_strerror);
            find("curl_multi_add_handle", made.multi_add_handle);
            find("curl_multi_cleanup", made.multi_cleanup);
            find("curl_multi_info_read", made.multi_info_read);
            find("curl_multi_init", made.multi_init);
            find("curl_multi_perform", made.multi_perform);
            find("curl_multi_poll", made.multi_poll);
            find("curl_multi_remove_handle", made.multi_remove_handle);
            find("curl_multi_wakeup", made.multi_wakeup);
            find("curl_slist_append", made.slist_append);
            find("curl_slist_free_all", made.slist_free_all);
        });
    if (!loaded)
        return loaded;
    if (const CURLcode ready = globalInit(CURL_GLOBAL_DEFAULT); ready != CURLE_OK)
        return Error{"libcurl cannot be started", static_cast<int>(ready)};
    return loaded;
}

}  // namespace

Result<const CurlLibrary*> CurlLibrary::get() {
    static files::LoadedOnce<CurlLibrary> library;
    return library.get(load);
}

}  // namespace trimora::host
