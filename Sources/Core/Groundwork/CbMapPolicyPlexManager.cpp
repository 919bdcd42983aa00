#include "Groundwork/CbMapPolicyPlexManager.h"

#include "Groundwork/CbExceptions.h"

void CbRaisePoolInUse(const char* functionName) { throw CbExceptionContainer(__FILE__, __LINE__, functionName); }
