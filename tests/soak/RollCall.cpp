#include "tests/soak/RollCall.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include <malloc.h>

#include "tests/soak/Sanitizer.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

constexpr std::size_t kLeastRolls = 5;

std::int64_t GetHeapInUse() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 objInfo = mallinfo2();  // of all arenas
    return static_cast<std::int64_t>(objInfo.uordblks + objInfo.hblkhd);
#endif
}

std::int64_t GetResident() {
    std::int64_t nPages = 0;
    std::ifstream("/proc/self/statm") >> nPages >> nPages;
    return nPages * sysconf(_SC_PAGESIZE) / 1024;
}

std::int64_t CountEntries(const char* pDirectory) {
    return std::distance(std::filesystem::directory_iterator(pDirectory), std::filesystem::directory_iterator());
}

struct COLUMN {
    const char* Name;
    std::int64_t ROLL::*Member;
    std::int64_t MayGrow;
};

constexpr COLUMN kColumns[] = {{"file descriptors", &ROLL::Descriptors, 0},
                               {"threads", &ROLL::Threads, 0},
                               {"bytes of heap in use", &ROLL::Heap, 131072},
                               {"KiB resident", &ROLL::Resident, 4096}};

}  // namespace

void GiveFreedMemoryBack() {
    constexpr int kLarge = 128 * 1024;  // bytes
    for (const int nParameter : {M_MMAP_THRESHOLD, M_TRIM_THRESHOLD}) {
        mallopt(nParameter, kLarge);  // NOLINT(concurrency-mt-unsafe): there is no other thread yet
    }
}

ROLL CallTheRoll(double fSeconds) {
    if (!kIsSanitized) {
        malloc_trim(0);  // what the allocator could give back isn't lost
    }
    return {fSeconds, GetResident(), GetHeapInUse(), CountEntries("/proc/self/fd"), CountEntries("/proc/self/task")};
}

std::vector<std::string> JudgeRolls(std::span<const ROLL> arrRolls) {
    if (arrRolls.size() < kLeastRolls) {
        return {std::to_string(arrRolls.size()) + " rolls are too few to judge"};
    }
    const auto arrCounted = arrRolls.subspan(std::max<std::size_t>(2, arrRolls.size() / 5));
    const std::size_t nThird = arrCounted.size() / 3;
    std::vector<std::string> vecComplaint;
    for (const COLUMN& objColumn : kColumns) {
        if (kIsSanitized && objColumn.Member == &ROLL::Resident) {
            continue;
        }
        const auto nEarly = std::ranges::max(arrCounted.first(nThird), {}, objColumn.Member).*objColumn.Member;
        const auto nLate = std::ranges::min(arrCounted.last(nThird), {}, objColumn.Member).*objColumn.Member;
        if (nLate > nEarly + objColumn.MayGrow) {
            vecComplaint.push_back(std::string(objColumn.Name) + " grow: from at most " + std::to_string(nEarly) +
                                   " to at least " + std::to_string(nLate));
        }
    }
    return vecComplaint;
}
