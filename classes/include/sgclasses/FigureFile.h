// What a figure keeps in a file beside its stored properties.
#pragma once

#include "sgclasses/SgclassesExport.h"

namespace sgclasses {

// Registers the figure's saved fields with the file writer and reader (see
// sgutils/persistence/SavedFieldsExtension.h). Called by registerClasses.
SGCLASSES_API void registerFigureSavedFields();

}  // namespace sgclasses
