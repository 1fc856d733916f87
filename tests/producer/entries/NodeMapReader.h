#pragma once

#include <gtest/gtest.h>

#include "GenApi/AccessMode.h"
#include "GenApi/Node.h"
#include "GenApi/NodeMap.h"
#include "GenApi/NodeVector.h"
#include "GenApi/Value.h"
#include "TLClass/TLClassXML/XMLAnalyzer.h"

/// Loads a port's description as the tree does, and reads every node that says it can be read.
/// @return how many there were
inline int ReadAllNodes(CGenTLLib& objLib, PORT_HANDLE hPort) {
    CXMLAnalyzer objAnalyzer(&objLib);
    objAnalyzer.LoadXMLFromPortHandle(hPort);
    GenApi_3_0::NodeList_t vecNode;
    objAnalyzer.GetNodeMapRef()->_GetNodes(vecNode);
    int nRead = 0;
    for (GenApi_3_0::INode* pNode : vecNode) {
        auto* pValue = dynamic_cast<GenApi_3_0::IValue*>(pNode);
        if (pValue != nullptr && GenApi_3_0::IsReadable(pNode->GetAccessMode())) {
            EXPECT_NO_THROW(pValue->ToString()) << pNode->GetName().c_str();
            ++nRead;
        }
    }
    return nRead;
}
