#include "support/ErrorTextMode.h"

constinit std::atomic<int> g_nErrorTextMode{0};
