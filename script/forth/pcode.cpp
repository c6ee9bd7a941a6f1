#include "script/forth/pcode.h"

void pcode::execute(FSContext*) { throw ForthException(ForthError::Unimplemented); }

pcode* pcode::getPFA() { throw ForthException(ForthError::NoBody); }

PCFA* pcode::getCFA() { throw ForthException(ForthError::InvalidAddress); }

pcode* pcode::getToMethod() { throw ForthException(ForthError::NoStoreMethod); }
