#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GenApi/DescriptionModel.h"
#include "GenApi/NameTable.h"
#include "GenApi/NodeContext.h"

namespace GenApi_3_0 {

class CNodeImpl;
class CRegisterSharing;

/// What a reference must lead to.
enum class EWanted { Anything, Number, Port };

/// Turns the properties of the node that is being loaded into numbers and nodes, and notes what refers to what. Lives
/// for one load. Every failure names the node, the element and its place in the description.
class CPropertyReader {
public:
    /// @param strText    the description as it was handed in, for places in messages
    /// @param vecNode    by number; null for what is no node
    CPropertyReader(std::string_view strText, const DESCRIPTION_MODEL& objModel, const CNameTable& objNames,
                    const std::vector<CNodeImpl*>& vecNode, CNodeContext& objContext, CRegisterSharing& objSharing)
        : m_strText(strText),
          m_objModel(objModel),
          m_objNames(objNames),
          m_vecNode(vecNode),
          m_objContext(objContext),
          m_objSharing(objSharing) {}

    /// The node whose properties come next.
    void Enter(std::uint32_t nNode) { m_nNode = nNode; }
    const NODE_RECORD& Record() const { return m_objModel.Nodes[m_nNode]; }
    CRegisterSharing& Sharing() const { return m_objSharing; }

    /// The node that the element names; the reference is noted.
    /// @throws RuntimeException  there is none, or it isn't what is wanted
    CNodeImpl* Node(const PROPERTY& objProperty, ELink eLink, EWanted eWanted);
    /// The same for a name in an attribute.
    CNodeImpl* NodeOfAttribute(const PROPERTY& objProperty, ELink eLink, EWanted eWanted);
    /// The node made of a nested element.
    CNodeImpl* NestedNode(const PROPERTY& objProperty, ELink eLink);
    /// Notes a further reason why the current node hangs on another.
    void NoteLink(std::uint32_t nTarget, ELink eLink) { m_objContext.Graph().Add(m_nNode, nTarget, eLink); }
    /// Notes that the named node refers to this one: a selector that names what it selects.
    void NoteSelector(std::uint32_t nSelected) { m_objContext.Graph().Add(nSelected, m_nNode, ELink::Selector); }

    std::int64_t Integer(const PROPERTY& objProperty) const;
    std::int64_t IntegerOfAttribute(const PROPERTY& objProperty) const;
    double Float(const PROPERTY& objProperty) const;
    bool YesNo(const PROPERTY& objProperty) const;

    /// One of a list of words.
    template <class Value>
    Value Word(const PROPERTY& objProperty, std::initializer_list<std::pair<std::string_view, Value>> listWord) const {
        for (const auto& [strWord, eValue] : listWord) {
            if (objProperty.Text == strWord) {
                return eValue;
            }
        }
        Fail(objProperty, "isn't one of the words allowed there");
    }

    /// @throws PropertyException
    [[noreturn]] void Fail(const PROPERTY& objProperty, const std::string& strWhat,
                           const char* pFile = __builtin_FILE(), int nLine = __builtin_LINE()) const;

private:
    CNodeImpl* Resolve(const PROPERTY& objProperty, std::string_view strName, ELink eLink, EWanted eWanted);
    std::string Place(std::string_view strPart) const;
    std::string Subject() const;

    std::string_view m_strText;
    const DESCRIPTION_MODEL& m_objModel;
    const CNameTable& m_objNames;
    const std::vector<CNodeImpl*>& m_vecNode;
    CNodeContext& m_objContext;
    CRegisterSharing& m_objSharing;
    std::uint32_t m_nNode = 0;
};

}  // namespace GenApi_3_0
