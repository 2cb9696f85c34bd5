#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "testing/CapturedLog.h"

namespace trimora::testing {
namespace {

std::atomic<bool> errorsExpected = false;

/// Fails each test in which a line was logged at error level that it did not expect.
class ErrorLineListener final : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo& /*info*/) override {
        errorsExpected = false;
        log_ = std::make_unique<CapturedLog>();
    }

    void OnTestEnd(const ::testing::TestInfo& /*info*/) override {
        if (!errorsExpected) {
            for (const std::string& text : log_->texts(foundation::log::Level::error))
                ADD_FAILURE() << "logged at error level: " << text;
        }
        log_.reset();
    }

    std::unique_ptr<CapturedLog> log_;
};

}  // namespace

void expectErrorLines() {
    errorsExpected = true;
}

}  // namespace trimora::testing

// Read by the sanitizers where the tests are built with one: memory that is refused must look as it does
// in the program, a null pointer and not the end of it.
extern "C" const char* __asan_default_options();  // NOLINT(readability-identifier-naming)
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options();  // NOLINT(readability-identifier-naming)
extern "C" const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    // The listener comes first in the list so that failures it adds still belong to the test.
    auto& listeners = ::testing::UnitTest::GetInstance()->listeners();
    auto* const printer = listeners.Release(listeners.default_result_printer());
    listeners.Append(new trimora::testing::ErrorLineListener);
    listeners.Append(printer);
    return RUN_ALL_TESTS();
}
