#include <Qel/Tnf/BlockStream.h>

#include <Qel/Exception/Throw.h>

namespace QelTnf {

BlockStream::BlockStream(Index& index, const std::string& name)
    : index_(index), name_(name), limiter_(index.FindLimiter(name)) {
    Block::TakeEnvironment();
}

Block& BlockStream::OpenBlock() {
    const std::uint64_t id = index_.ChooseBlock(name_);
    if (index_.InfoOf(id).frozen) {
        QEL_THROW(Qel::Exception::MiscelleneousException("Attempt to write into a frozen block"));
    }
    limiter_ = index_.FindLimiter(name_);
    return index_.BlockOf(id);
}

std::uint64_t BlockStream::GetSize() const {
    return limiter_ != nullptr ? index_.StreamSize(*limiter_) : index_.GetStreamSize(name_);
}

} // namespace QelTnf
