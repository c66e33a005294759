#pragma once

#include <cstdint>

namespace caudalis {

/// Base of application-defined object errors.
inline constexpr std::int32_t ObjectErrorBase = static_cast<std::int32_t>(0x80040000u);

enum class AspersorException : std::int32_t {
    MissingAsperorDataException = ObjectErrorBase + 500,
};

enum class DescricaoException : std::int32_t {
    MissingNameException = ObjectErrorBase + 600,
    ModeloIsNewRecordException = ObjectErrorBase + 601,
};

enum class ModeloException : std::int32_t {
    MissingNameException = ObjectErrorBase + 700,
    MarcaIsNewRecordException = ObjectErrorBase + 701,
};

enum class MarcaException : std::int32_t {
    MissingNameException = ObjectErrorBase + 800,
};

enum class DropException : std::int32_t {
    DropIncompleteException = ObjectErrorBase + 900,
};

enum class CartaExceptions : std::int32_t {
    NomeDaCartaJaExistente = ObjectErrorBase + 1000,
};

enum class PluviometroException : std::int32_t {
    PluviometroIncompleteException = ObjectErrorBase + 1001,
};

enum class WaterDepthSampleException : std::int32_t {
    NotEnoughSamplesToComputeLowQuarter = ObjectErrorBase + 1101,
};

/// The number of a library error code.
template <class Code>
constexpr std::int32_t errorNumber(Code code) {
    return static_cast<std::int32_t>(code);
}

/// Raises a library error code with its number only.
template <class Code>
[[noreturn]] void raiseCode(Code code);

}  // namespace caudalis

#include "caudalis/core/Error.hpp"

template <class Code>
void caudalis::raiseCode(Code code) {
    caudalis::raiseError(errorNumber(code));
}
