// The orders in which pages can be kept.
#pragma once

namespace host {

enum class PageOrder {
    Own,  ///< as they were added and then moved about
    Name, ///< folders by their paths, the pages of each by their names, both as people count
    Date, ///< the page that was written first comes first, whatever its folder; those of one moment by name
};

} // namespace host
