#include "TLClass/TLClassLoadTL/GenTLLib.h"

#include "support/Log.h"
#include "support/Text.h"
#include "support/ZrException.h"

