#include "ctl/Mosaic.h"

namespace {

/// The neighbours of a row or a column, the first and the last one's mirrored so that they have the right colour.
struct NEIGHBOURS {
    std::size_t nBefore;
    std::size_t nBehind;
};

NEIGHBOURS NeighboursOf(std::size_t nIndex, std::size_t nCount) {
    return {nIndex == 0 ? 1 : nIndex - 1, nIndex + 1 == nCount ? nCount - 2 : nIndex + 1};
}

std::uint16_t Average(unsigned a, unsigned b) {
    return static_cast<std::uint16_t>((a + b + 1) / 2);
}

std::uint16_t Average(unsigned a, unsigned b, unsigned c, unsigned d) {
    return static_cast<std::uint16_t>((a + b + c + d + 2) / 4);
}

}  // namespace

std::vector<std::uint16_t> Demosaic(std::span<const std::uint16_t> vecSample, std::size_t nWidth, std::size_t nHeight,
                                    MOSAIC eMosaic) {
    // Where red stands in each square of two by two; blue is opposite to it.
    const std::size_t nRedColumn = eMosaic == MOSAIC::GR || eMosaic == MOSAIC::BG ? 1 : 0;
    const std::size_t nRedRow = eMosaic == MOSAIC::GB || eMosaic == MOSAIC::BG ? 1 : 0;
    std::vector<std::uint16_t> vecColour(vecSample.size() * 3);
    std::uint16_t* pColour = vecColour.data();
    for (std::size_t nY = 0; nY < nHeight; ++nY) {
        const NEIGHBOURS objRow = NeighboursOf(nY, nHeight);
        const std::uint16_t* const pAbove = &vecSample[objRow.nBefore * nWidth];
        const std::uint16_t* const pHere = &vecSample[nY * nWidth];
        const std::uint16_t* const pBelow = &vecSample[objRow.nBehind * nWidth];
        const bool bRowOfRed = nY % 2 == nRedRow;
        // In a row of red the measured colours are red and green, in the others blue and green.
        const std::size_t nOwn = bRowOfRed ? 0 : 2;
        for (std::size_t nX = 0; nX < nWidth; ++nX, pColour += 3) {
            const auto [nLeft, nRight] = NeighboursOf(nX, nWidth);
            const bool bGreen = (nX % 2 == nRedColumn) != bRowOfRed;
            if (bGreen) {
                pColour[1] = pHere[nX];
                pColour[nOwn] = Average(pHere[nLeft], pHere[nRight]);
                pColour[2 - nOwn] = Average(pAbove[nX], pBelow[nX]);
            } else {
                pColour[nOwn] = pHere[nX];
                pColour[1] = Average(pHere[nLeft], pHere[nRight], pAbove[nX], pBelow[nX]);
                pColour[2 - nOwn] = Average(pAbove[nLeft], pAbove[nRight], pBelow[nLeft], pBelow[nRight]);
            }
        }
    }
    return vecColour;
}
