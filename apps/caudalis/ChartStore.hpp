#pragma once

#include <memory>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"

namespace caudalis {
class CartaAspersores;
}

namespace caudalis::cli {

/// Where sprinkler charts are kept: the project database through `CartaAspersoresStatic`
/// (`saveAsNew`, `enumerateAll`, `find`, `destroy`).
class ChartStore {
public:
    virtual ~ChartStore() = default;
    /// Stores the chart under a new name and returns its key.
    virtual Long saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name) = 0;
    virtual std::vector<CartaInfo> list() = 0;
    virtual std::shared_ptr<CartaAspersores> find(Long id) = 0;
    virtual void destroy(Long id) = 0;
};

}  // namespace caudalis::cli
