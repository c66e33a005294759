#pragma once

// Umbrella header: everything a host needs.
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Basic.hpp"
#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Comparator.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Exceptions.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/core/Variant.hpp"
