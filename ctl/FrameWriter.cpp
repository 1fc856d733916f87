#include "ctl/FrameWriter.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "ctl/ExitCode.h"
#include "ctl/PngImage.h"
#include "ctl/UserFile.h"

namespace {

constexpr std::size_t kMostBytes = std::size_t{512} << 20;
constexpr unsigned kMostThreads = 4;

}  // namespace

std::string GetFrameFileName(const GRABBED_FRAME& objFrame, FRAME_FILE eFile) {
    constexpr std::size_t kDigits = 6;
    std::string strNumber = std::to_string(objFrame.nNumber);
    strNumber.insert(0, kDigits - std::min(kDigits, strNumber.size()), '0');
    if (eFile == FRAME_FILE::Png) {
        return "frame-" + strNumber + ".png";
    }
    const FRAME_SHAPE& objShape = objFrame.objShape;
    return "frame-" + strNumber + '-' + std::to_string(objShape.nWidth) + 'x' + std::to_string(objShape.nHeight) + '-' +
           GetPixelFormatName(objShape.nPixelFormat) + ".raw";
}

CFrameWriter::CFrameWriter(std::string strFolder, FRAME_FILE eFile)
    : m_strFolder(std::move(strFolder)), m_eFile(eFile) {
    std::error_code objError;
    std::filesystem::create_directories(m_strFolder, objError);
    if (!std::filesystem::is_directory(m_strFolder)) {
        throw CCommandError(EXIT_CODE::Failure, m_strFolder + ": it can't be made a folder" +
                                                    (objError ? ": " + objError.message() : std::string()));
    }
    __StartThreads();
}

/// As many as there are processors. One is enough where the system has no more to give.
void CFrameWriter::__StartThreads() {
    const unsigned nThreads = std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads);
    m_vecThread.reserve(nThreads);
    try {
        for (unsigned i = 0; i < nThreads; ++i) {
            m_vecThread.emplace_back([this] { __OnThreadWrite(); });
        }
    } catch (const std::system_error& objError) {
        if (m_vecThread.empty()) {
            throw CCommandError(EXIT_CODE::Failure,
                                std::string("there is no thread to write frames on: ") + objError.what());
        }
    }
}

CFrameWriter::~CFrameWriter() {
    {
        const std::lock_guard objLock(m_csQueue);
        m_listFrame.clear();
    }
    __Join();
}

void CFrameWriter::Push(GRABBED_FRAME objFrame) {
    std::unique_lock objLock(m_csQueue);
    m_objRoom.wait(objLock, [this] { return m_pFailure || m_nBytes < kMostBytes; });
    __RethrowFailure();
    m_nBytes += objFrame.vecData.size();
    m_listFrame.push_back(std::move(objFrame));
    objLock.unlock();  // or the thread would wake only to wait for it
    m_objWork.notify_one();
}

void CFrameWriter::Finish() {
    __Join();
    const std::lock_guard objLock(m_csQueue);
    __RethrowFailure();
}

void CFrameWriter::__RethrowFailure() {
    if (m_pFailure) {
        std::rethrow_exception(m_pFailure);
    }
}

void CFrameWriter::__Join() {
    {
        const std::lock_guard objLock(m_csQueue);
        m_bFinish = true;
    }
    m_objWork.notify_all();
    for (std::thread& objThread : m_vecThread) {
        objThread.join();
    }
    m_vecThread.clear();
}

void CFrameWriter::__OnThreadWrite() {
    std::unique_lock objLock(m_csQueue);
    for (;;) {
        m_objWork.wait(objLock, [this] { return m_bFinish || m_pFailure || !m_listFrame.empty(); });
        if (m_pFailure || m_listFrame.empty()) {
            return;
        }
        const GRABBED_FRAME objFrame = std::move(m_listFrame.front());
        m_listFrame.pop_front();
        objLock.unlock();
        std::exception_ptr pFailure;
        try {
            __WriteFrame(objFrame);
        } catch (const std::exception&) {
            pFailure = std::current_exception();
        }
        objLock.lock();
        m_nBytes -= objFrame.vecData.size();
        m_objRoom.notify_one();
        if (pFailure && !m_pFailure) {
            m_pFailure = pFailure;
            m_objWork.notify_all();
        }
    }
}

void CFrameWriter::__WriteFrame(const GRABBED_FRAME& objFrame) const {
    const std::string strPath = (std::filesystem::path(m_strFolder) / GetFrameFileName(objFrame, m_eFile)).string();
    if (m_eFile == FRAME_FILE::Raw) {
        WriteUserFile(strPath, {reinterpret_cast<const char*>(objFrame.vecData.data()), objFrame.vecData.size()},
                      EWholeFile::Quick);
        return;
    }
    const std::optional<IMAGE> objImage = ConvertFrame(objFrame.vecData, objFrame.objShape);
    if (!objImage) {
        throw CCommandError(EXIT_CODE::Failure,
                            "a frame of " + std::to_string(objFrame.objShape.nWidth) + 'x' +
                                std::to_string(objFrame.objShape.nHeight) + ' ' +
                                GetPixelFormatName(objFrame.objShape.nPixelFormat) + " with " +
                                std::to_string(objFrame.vecData.size()) +
                                " bytes can't be made a PNG file. --raw writes frames of any format as they come");
    }
    WriteUserFile(strPath, EncodePng(*objImage), EWholeFile::Quick);
}
