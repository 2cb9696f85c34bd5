#include "host/CurlTransport.h"

#include <pthread.h>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

#include "foundation/SignalStack.h"
#include "host/CurlLibrary.h"

namespace trimora::host {

using analytics::HttpRequest;
using analytics::HttpTransport;
using analytics::TelemetrixError;
using foundation::Error;
using foundation::Result;

namespace {

/// The library, which was loaded before there was a transport.
const CurlLibrary& curl() {
    static const CurlLibrary& library = **CurlLibrary::get();
    return library;
}

struct FreeEasy {
    void operator()(CURL* handle) const { curl().easy_cleanup(handle); }
};
struct FreeMulti {
    void operator()(CURLM* handle) const { curl().multi_cleanup(handle); }
};
struct FreeList {
    void operator()(curl_slist* list) const { curl().slist_free_all(list); }
};

std::size_t throwAway(char* /*bytes*/, std::size_t size, std::size_t count, void* /*user*/) {
    return size * count;
}

/// One request on its way.
class Transfer {
 public:
    Transfer(HttpRequest request, HttpTransport::Completion completion)
        : request_(std::move(request)), completion_(std::move(completion)), easy_(curl().easy_init()) {}

    [[nodiscard]] CURL* handle() const { return easy_.get(); }

    void prepare() {
        set(CURLOPT_URL, request_.url.c_str());
        set(CURLOPT_PROTOCOLS_STR, "https");
        set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        set(CURLOPT_FOLLOWLOCATION, 0L);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_TIMEOUT_MS, static_cast<long>(request_.timeoutSeconds * 1000));
        set(CURLOPT_POST, 1L);
        set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
        set(CURLOPT_POSTFIELDS, request_.body.data());
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
        set(CURLOPT_WRITEFUNCTION, throwAway);
        set(CURLOPT_ERRORBUFFER, reason_);
        setAuthorities();
        setHeaders();
    }

    void finish(CURLcode code) {
        long status = 0;
        curl().easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
        if (code == CURLE_OK)
            completion_(static_cast<int>(status));
        else
            fail(code, reason_[0] != '\0' ? reason_ : curl().easy_strerror(code));
    }

    void fail(CURLcode code, const char* why) {
        completion_(TelemetrixError{CurlTransport::kDomain, static_cast<int>(code), why});
    }

 private:
    template <typename Value>
    void set(CURLoption option, Value value) {
        curl().easy_setopt(handle(), option, value);
    }

    // The library itself does not look at the variable by which OpenSSL's programs are told.
    void setAuthorities() {
        if (const char* const file = std::getenv("SSL_CERT_FILE"); file != nullptr && *file != '\0')
            set(CURLOPT_CAINFO, file);
    }

    void setHeaders() {
        // An empty value takes away a header that libcurl would add by itself.
        add("Content-Type:");
        add("Expect:");
        for (const auto& [name, value] : request_.headers)
            add(std::string(name).append(": ").append(value));
        set(CURLOPT_HTTPHEADER, headers_.get());
    }

    void add(const std::string& line) {
        headers_.reset(curl().slist_append(headers_.release(), line.c_str()));
    }

    HttpRequest request_;
    HttpTransport::Completion completion_;
    std::unique_ptr<curl_slist, FreeList> headers_;
    std::unique_ptr<CURL, FreeEasy> easy_;
    char reason_[CURL_ERROR_SIZE] = "";
};

}  // namespace

/// The thread and what it works on.
class CurlTransport::Worker {
 public:
    explicit Worker(CURLM* multi) : multi_(multi), thread_([this] { work(); }) {}

    ~Worker() {
        cancelAll();
        {
            const std::scoped_lock lock(mutex_);
            closing_ = true;
        }
        curl().multi_wakeup(multi_.get());
        thread_.join();
    }

    void send(std::unique_ptr<Transfer> transfer) {
        {
            const std::scoped_lock lock(mutex_);
            ++unanswered_;
            arriving_.push_back(std::move(transfer));
        }
        curl().multi_wakeup(multi_.get());
    }

    void cancelAll() {
        std::unique_lock lock(mutex_);
        if (unanswered_ == 0)
            return;
        cancelling_ = true;
        curl().multi_wakeup(multi_.get());
        allAnswered_.wait(lock, [this] { return unanswered_ == 0; });
    }

 private:
    void work() {
        const foundation::SignalStack stack;
        pthread_setname_np(pthread_self(), "telemetrix.http");
        while (!isClosing()) {
            begin(takeArrived());
            int running = 0;
            curl().multi_perform(multi_.get(), &running);
            finishThoseDone();
            if (takeCancelling())
                cancelThoseUnderWay();
            curl().multi_poll(multi_.get(), nullptr, 0, kLongestSleepMilliseconds, nullptr);
        }
    }

    bool isClosing() {
        const std::scoped_lock lock(mutex_);
        return closing_;
    }

    std::list<std::unique_ptr<Transfer>> takeArrived() {
        const std::scoped_lock lock(mutex_);
        return std::exchange(arriving_, {});
    }

    bool takeCancelling() {
        const std::scoped_lock lock(mutex_);
        return std::exchange(cancelling_, false);
    }

    void begin(std::list<std::unique_ptr<Transfer>> arrived) {
        for (auto& transfer : arrived) {
            transfer->prepare();
            curl().multi_add_handle(multi_.get(), transfer->handle());
            underWay_.push_back(std::move(transfer));
        }
    }

    void finishThoseDone() {
        int left = 0;
        while (const CURLMsg* const message = curl().multi_info_read(multi_.get(), &left)) {
            if (message->msg != CURLMSG_DONE)
                continue;
            const CURL* const handle = message->easy_handle;
            const CURLcode code = message->data.result;
            const auto done = std::find_if(underWay_.begin(), underWay_.end(), [&](const auto& transfer) {
                return transfer->handle() == handle;
            });
            auto transfer = std::move(*done);
            underWay_.erase(done);
            curl().multi_remove_handle(multi_.get(), transfer->handle());
            transfer->finish(code);
            noteAnswered(std::move(transfer));
        }
    }

    void cancelThoseUnderWay() {
        begin(takeArrived());
        for (auto& transfer : std::exchange(underWay_, {})) {
            curl().multi_remove_handle(multi_.get(), transfer->handle());
            transfer->fail(CURLE_ABORTED_BY_CALLBACK, "cancelled");
            noteAnswered(std::move(transfer));
        }
    }

    void noteAnswered(std::unique_ptr<Transfer> transfer) {
        transfer.reset();  // with all that its completion holds, before anybody is told
        const std::scoped_lock lock(mutex_);
        if (--unanswered_ == 0)
            allAnswered_.notify_all();
    }

    static constexpr int kLongestSleepMilliseconds = 60'000;  // it is woken for everything that matters

    std::unique_ptr<CURLM, FreeMulti> multi_;
    std::mutex mutex_;
    std::condition_variable allAnswered_;
    std::list<std::unique_ptr<Transfer>> arriving_;
    int unanswered_ = 0;
    bool cancelling_ = false;
    bool closing_ = false;
    std::list<std::unique_ptr<Transfer>> underWay_;  // the thread's own
    std::thread thread_;                             // last: it uses the members above
};

Result<std::unique_ptr<CurlTransport>> CurlTransport::create() {
    if (const auto library = CurlLibrary::get(); !library)
        return library.error();
    CURLM* const multi = curl().multi_init();
    if (multi == nullptr)
        return Error{"libcurl cannot be started"};
    return std::unique_ptr<CurlTransport>(new CurlTransport(std::make_unique<Worker>(multi)));
}

CurlTransport::CurlTransport(std::unique_ptr<Worker> worker) : worker_(std::move(worker)) {}

CurlTransport::~CurlTransport() = default;

void CurlTransport::send(HttpRequest request, Completion completion) {
    worker_->send(std::make_unique<Transfer>(std::move(request), std::move(completion)));
}

void CurlTransport::cancelAll() {
    worker_->cancelAll();
}

}  // namespace trimora::host
