#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/NameTable.h"
#include "GenApi/NodeContext.h"
#include "GenApi/NodeImpl.h"

namespace GenApi_3_0 {

/// Makes the nodes of a description and joins them. Lives for one load.
class CNodeLoader {
public:
    /// @param strText  the description as it was handed in, for places in messages
    CNodeLoader(std::string_view strText, const DESCRIPTION_MODEL& objModel, CNameTable& objNames,
                CNodeContext& objContext)
        : m_strText(strText), m_objModel(objModel), m_objNames(objNames), m_objContext(objContext) {}

    /// @return by number; null for what is no node
    /// @throws RuntimeException, PropertyException  as CNodeMapFactory tells
    std::vector<std::unique_ptr<CNodeImpl>> Load();

private:
    std::unique_ptr<CNodeImpl> MakeNode(std::uint32_t nNode) const;
    void MakeNodes();
    void ApplyProperties();

    std::string_view m_strText;
    const DESCRIPTION_MODEL& m_objModel;
    CNameTable& m_objNames;
    CNodeContext& m_objContext;
    std::vector<std::unique_ptr<CNodeImpl>> m_vecOwned;
    std::vector<CNodeImpl*> m_vecNode;
};

}  // namespace GenApi_3_0
