#pragma once

#include <cstdint>
#include <vector>

#include "GenApi/GCStringVector.h"

// The enumerations of the GenApi interfaces. Their numbers are the standard's: they cross library borders.

namespace GenApi_3_0 {

using GenICam_3_0::gcstring;
using GenICam_3_0::gcstring_vector;

using StringList_t = gcstring_vector;
using int64_autovector_t = std::vector<std::int64_t>;
using double_autovector_t = std::vector<double>;

enum EAccessMode { NI = 0, NA = 1, WO = 2, RO = 3, RW = 4, _UndefinedAccesMode = 5, _CycleDetectAccesMode = 6 };

enum EVisibility { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3, _UndefinedVisibility = 99 };

enum ECachingMode { NoCache = 0, WriteThrough = 1, WriteAround = 2, _UndefinedCachingMode = 3 };

enum ERepresentation {
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
    _UndefinedRepresentation = 7
};

enum EEndianess { BigEndian = 0, LittleEndian = 1, _UndefinedEndian = 2 };

enum ESign { Signed = 0, Unsigned = 1, _UndefinedSign = 2 };

enum ESlope { Increasing = 0, Decreasing = 1, Varying = 2, Automatic = 3, _UndefinedESlope = 4 };

enum EDisplayNotation { fnAutomatic = 0, fnFixed = 1, fnScientific = 2, _UndefinedEDisplayNotation = 3 };

enum EYesNo { No = 0, Yes = 1, _UndefinedYesNo = 2 };

enum ENameSpace { Custom = 0, Standard = 1, _UndefinedNameSpace = 2 };

enum EIncMode { noIncrement = 0, fixedIncrement = 1, listIncrement = 2 };

enum EInterfaceType {
    intfIValue = 0,
    intfIBase = 1,
    intfIInteger = 2,
    intfIBoolean = 3,
    intfICommand = 4,
    intfIFloat = 5,
    intfIString = 6,
    intfIRegister = 7,
    intfICategory = 8,
    intfIEnumeration = 9,
    intfIEnumEntry = 10,
    intfIPort = 11
};

/// When a callback runs: with the node map's lock held, or after the thread that made the change has given it back.
enum ECallbackType { cbPostInsideLock = 1, cbPostOutsideLock = 2 };

/// Which neighbours of a node are asked for.
enum ELinkType {
    ctParentNodes = 0,
    ctReadingChildren = 1,
    ctWritingChildren = 2,
    ctInvalidatingChildren = 3,
    ctDependingNodes = 4,
    ctTerminalNodes = 5
};

}  // namespace GenApi_3_0
