#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ctl/FrameImage.h"

enum class FRAME_FILE { Png, Raw };

/// A frame on its way to a file.
struct GRABBED_FRAME {
    std::uint64_t nNumber = 0;  ///< counted from 1; names the file
    FRAME_SHAPE objShape;
    std::vector<std::uint8_t> vecData;
};

/// The name of a frame's file: "frame-000001.png", "frame-000001-640x480-Mono8.raw".
std::string GetFrameFileName(const GRABBED_FRAME& objFrame, FRAME_FILE eFile);

/// Writes frames to a folder on threads of its own, so that files don't hold back the stream. What waits to be written
/// is bounded: Push then blocks, and the stream loses frames rather than the machine its memory.
///
/// Push and Finish are for one thread.
class CFrameWriter {
public:
    /// Makes the folder with its parents.
    /// @throws CCommandError  it can't be made, or there is no thread to write on
    CFrameWriter(std::string strFolder, FRAME_FILE eFile);
    /// Drops what waits.
    ~CFrameWriter();
    CFrameWriter(const CFrameWriter&) = delete;
    CFrameWriter& operator=(const CFrameWriter&) = delete;

    /// Takes a frame over.
    /// @throws CCommandError  an earlier frame couldn't be written
    void Push(GRABBED_FRAME objFrame);
    /// Writes what waits.
    /// @throws CCommandError  a frame couldn't be written
    void Finish();

private:
    void __StartThreads();
    void __OnThreadWrite();
    void __WriteFrame(const GRABBED_FRAME& objFrame) const;
    void __RethrowFailure();
    void __Join();

    const std::string m_strFolder;
    const FRAME_FILE m_eFile;
    std::mutex m_csQueue;  // guards the next four
    std::deque<GRABBED_FRAME> m_listFrame;
    std::size_t m_nBytes = 0;  // of the frames in m_listFrame
    bool m_bFinish = false;    // the threads end when nothing waits
    std::exception_ptr m_pFailure;
    std::condition_variable m_objWork;  // what the threads wait for: a frame, the end, a failure
    std::condition_variable m_objRoom;  // what Push waits for: fewer bytes, a failure
    std::vector<std::thread> m_vecThread;
};
