// Component lists of the two player interfaces, turned into records.
#pragma once

#include "API/Src/IAVComponent.h"

struct _GVariant;

// Appends one record for each (isbnqysbi) of the array whose type is known. A null array is an empty one.
void DeserialiseAVComponents(AVComponentVector& components, _GVariant* array);
