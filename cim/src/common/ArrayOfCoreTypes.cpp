// The arrays of basic types the library provides. Any other element type
// links only if its owner instantiates it.
#include "ArrayImpl.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

template class Array<Boolean>;
template class Array<Uint8>;
template class Array<Sint8>;
template class Array<Uint16>;
template class Array<Sint16>;
template class Array<Uint32>;
template class Array<Sint32>;
template class Array<Uint64>;
template class Array<Sint64>;
template class Array<Real32>;
template class Array<Real64>;
template class Array<Char16>;
template class Array<String>;
template class Array<CIMName>;
template class Array<CIMNamespaceName>;
template class Array<CIMDateTime>;

PEGASUS_NAMESPACE_END
