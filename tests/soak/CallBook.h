#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "GenApi/GCException.h"

enum class ECall : std::size_t { Update, Open, Close, Read, Write, FeatureFile, Start, Stop, Frame };
inline constexpr std::size_t kCallKinds = 9;

/// Every call that is made of the library, with how long it took, and every complaint. For any thread.
///
/// A camera that is gone or plays tricks makes calls fail, which is no fault: they are counted as refused. A call that
/// outlives its bound is one, and so is an exception of another family than the library's, which isn't caught here.
class CCallBook {
public:
    using Clock = std::chrono::steady_clock;

    /// @return whether it went well
    template <class Call>
    bool Try(ECall eCall, const Call& funCall) {
        const auto tmStart = Begin(eCall);
        bool bGood = true;
        try {
            funCall();
        } catch (const GenICam_3_0::GenericException&) {
            bGood = false;
        } catch (const std::runtime_error&) {  // the library's family among them
            bGood = false;
        }
        End(eCall, tmStart, bGood);
        return bGood;
    }

    /// Notes a complaint unless what must hold does.
    /// @return bHolds
    bool Expect(bool bHolds, const std::string& strComplaint);

    /// Ends the process, telling what hangs, if a call has been under way for a minute. Nothing else could end it.
    void EndIfSomethingHangs() const;

    std::size_t GetComplaints() const { return m_nComplaints; }
    /// One line for each kind of call.
    void Print() const;

private:
    struct COUNTS {
        std::uint64_t Calls = 0;
        std::uint64_t Refused = 0;
        Clock::duration Total{};
        Clock::duration Longest{};
    };
    struct UNDER_WAY {
        ECall Call;
        Clock::time_point Since;
    };

    Clock::time_point Begin(ECall eCall);
    void End(ECall eCall, Clock::time_point tmStart, bool bGood);

    mutable std::mutex m_mtx;  // guards the next two
    std::array<COUNTS, kCallKinds> m_arrCounts;
    std::map<std::thread::id, UNDER_WAY> m_mapUnderWay;
    std::atomic<std::size_t> m_nComplaints{0};
};
