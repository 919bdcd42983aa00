#include "Groundwork/CbStreamReadBinaryBuffer.h"

CbStreamReadBinaryBuffer::~CbStreamReadBinaryBuffer() = default;
