// A program outside the tree: loads the producer, and prints the version that it tells.

#include <exception>
#include <iostream>

#include "TLClass/TLClassMain/ITL.h"
#include "TLClass/TLClassMain/TLManager.h"

int main() {
    try {
        GetTLManager()->DoInit({"ZrGVTL.cti"});
        for (const auto& pTL : GetTLManager()->GetTLList()) {
            std::cout << pTL->GetTLInformation().Version << '\n';
        }
        GetTLManager()->DoUninit();
    } catch (const std::exception& objError) {
        std::cerr << objError.what() << '\n';
        return 1;
    }
}
