#pragma once

#include <boost/token_functions.hpp>
#include <boost/token_iterator.hpp>

#include <cstddef>
#include <string>

namespace Qel::Mox2::Component {

/// Splits a path into its components at every character that is one of the separators. Empty components are
/// left out.
class PathSplitter {
public:
    using Separators = boost::char_separator<char>;
    using Iterator = boost::token_iterator<Separators, std::string::const_iterator, std::string>;

    /// @param path  Must live as long as the splitter.
    /// @param start Where in the path the splitting begins.
    PathSplitter(const std::string& path, const char* separators, std::size_t start = 0)
        : first_(path.begin() + static_cast<std::string::difference_type>(start)),
          last_(path.end()),
          splitting_(separators, "", boost::drop_empty_tokens) {}
    virtual ~PathSplitter() = default;

    Iterator begin() const { return Iterator(splitting_, first_, last_); }
    Iterator end() const { return Iterator(splitting_, last_, last_); }

private:
    std::string::const_iterator first_;
    std::string::const_iterator last_;
    Separators splitting_;
};

} // namespace Qel::Mox2::Component
