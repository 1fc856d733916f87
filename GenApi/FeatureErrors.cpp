#include "GenApi/FeatureErrors.h"

#include <string>

namespace GenApi_3_0 {

void CFeatureErrors::Note(std::string_view strName, std::string_view strWhy) {
    ++m_nNoted;
    if (m_pErrorList == nullptr || m_nNoted > kMaxTexts + 1) {
        return;
    }
    if (m_nNoted > kMaxTexts) {
        m_pErrorList->emplace_back("There are more errors than these");
    } else if (strWhy.find(strName) != std::string_view::npos) {
        m_pErrorList->emplace_back(strWhy);  // the node map names its node itself
    } else {
        m_pErrorList->push_back(std::string(strName).append(": ").append(strWhy));
    }
}

}  // namespace GenApi_3_0
