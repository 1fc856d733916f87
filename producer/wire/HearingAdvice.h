#pragma once

#include <string>

#include "producer/wire/Adapter.h"

namespace producer {

/// What may keep the answers of cameras from being heard on an adapter, and what to do about it, in sentences for the
/// user.
/// @param nSendError    why the questions couldn't be sent, as an errno; 0 when they were
/// @param nPacketError  why there is no packet socket, as an errno; 0 when there is one: nothing hides answers from it
/// @return empty when nothing is known.
std::string MakeHearingAdvice(const ADAPTER& objAdapter, int nSendError, int nPacketError);

}  // namespace producer
