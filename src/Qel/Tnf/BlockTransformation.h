#pragma once

#include <Qel/Tnf/Block.h>

namespace QelTnf {

/// Replaces a block's content in place on its way to the file.
class BlockTransformation {
public:
    virtual void operator()(Block& block) = 0;

protected:
    ~BlockTransformation() = default;
};

} // namespace QelTnf
