#pragma once

#include "Groundwork/IStreamWrite.h"

/// CbStreamWrite: base of the streams of the foundation that write. It adds nothing to the interface.
class VELLUM_API CbStreamWrite : public IStreamWrite
{
public:
    ~CbStreamWrite() override;

protected:
    CbStreamWrite() = default;
    CbStreamWrite(const CbStreamWrite&) = default;
    CbStreamWrite& operator=(const CbStreamWrite&) = default;
};
