#pragma once

#include <memory>

#include "GenApi/Node.h"

namespace GenApi_3_0 {

/// What is called when a node changes. Made by Register, owned by the node until Deregister.
class CNodeCallback {
public:
    explicit CNodeCallback(ECallbackType eType) : m_eType(eType) {}
    virtual ~CNodeCallback() = default;
    CNodeCallback(const CNodeCallback&) = delete;
    CNodeCallback& operator=(const CNodeCallback&) = delete;

    virtual void operator()(INode* pNode) const = 0;
    ECallbackType GetCallbackType() const { return m_eType; }

private:
    ECallbackType m_eType;
};

/// Calls a free function.
class Function_NodeCallback : public CNodeCallback {
public:
    using PFunction = void (*)(INode* pNode);

    Function_NodeCallback(PFunction pFunction, ECallbackType eType) : CNodeCallback(eType), m_pFunction(pFunction) {}
    void operator()(INode* pNode) const override { m_pFunction(pNode); }

private:
    PFunction m_pFunction;
};

/// Calls a member function of an object that it doesn't own.
template <class Client, class Member>
class Member_NodeCallback : public CNodeCallback {
public:
    Member_NodeCallback(Client& objClient, Member pMember, ECallbackType eType)
        : CNodeCallback(eType), m_pClient(&objClient), m_pMember(pMember) {}
    void operator()(INode* pNode) const override { (m_pClient->*m_pMember)(pNode); }

private:
    Client* m_pClient;
    Member m_pMember;
};

/// Calls a member of an object whenever the node's value, limits or access mode may have changed: once for each change,
/// however many ways lead from the change to the node.
/// @param objClient  not owned; must live until the callback is deregistered
template <class Client, class Member>
CallbackHandleType Register(INode* pNode, Client& objClient, Member pMember, ECallbackType eType = cbPostInsideLock) {
    return pNode->RegisterCallback(
        std::make_unique<Member_NodeCallback<Client, Member>>(objClient, pMember, eType).release());
}

inline CallbackHandleType Register(INode* pNode, Function_NodeCallback::PFunction pFunction,
                                   ECallbackType eType = cbPostInsideLock) {
    return pNode->RegisterCallback(std::make_unique<Function_NodeCallback>(pFunction, eType).release());
}

/// Ends a registration. When it returns, the callback doesn't run on another thread and never will again. It may be
/// called from inside any callback, for that one too. A caller that holds the node map's lock must not deregister a
/// callback of the kind outside the lock that itself waits for the lock: the two would wait for each other. Where two
/// callbacks outside the lock deregister each other on two threads at once, the second to ask doesn't wait, and the
/// first may still run when it returns.
/// @return false if the handle isn't, or is no longer, one of a living node map
bool Deregister(CallbackHandleType hCallback);

}  // namespace GenApi_3_0
