#pragma once

namespace Qel::Mox2 {

/// What the numbers of an array property mean, which determines how many columns the array has.
///
/// The digits 0, 1 and 2 stand for elements of one, two and three dimensions (lines, faces, solids). A name
/// in quotes is the default name of its type; types without one need a name in the call.
enum DatasetType : int {
    Connectivity0 = 0,       ///< 1 column, "Connectivity": zero-based node indices of 1-d elements.
    Connectivity1 = 1,       ///< 1 column, "Connectivity": the same for 2-d elements.
    Connectivity2 = 2,       ///< 1 column, "Connectivity": the same for 3-d elements.
    Polylength0 = 3,         ///< 1 column, "Polylength": the number of nodes of each 1-d element.
    Polylength1 = 4,         ///< 1 column, "Polylength": the same for 2-d elements.
    Polylength2 = 5,         ///< 1 column, "Polylength": the same for 3-d elements.
    PartElements0 = 6,       ///< 1 column, "Part Elements": indices of the 1-d elements of a part.
    PartElements1 = 7,       ///< 1 column, "Part Elements": the same for 2-d elements.
    PartElements2 = 8,       ///< 1 column, "Part Elements": the same for 3-d elements.
    Coordinates = 9,         ///< 3 columns, "Coordinates": x, y, z of each node.
    NodeScalar = 10,         ///< 1 column: a value for each node.
    NodeVector = 11,         ///< 3 columns: a vector for each node.
    NodeSixA = 12,           ///< 6 columns: six values for each node.
    NodeSixB = 13,           ///< 6 columns: six values for each node, second kind.
    ElementScalar = 14,      ///< 1 column: a value for each element.
    ElementVector = 15,      ///< 3 columns: a vector for each element.
    ElementSixA = 16,        ///< 6 columns: six values for each element.
    ElementSixB = 17,        ///< 6 columns: six values for each element, second kind.
    ThirdScalar = 18,        ///< 1 column: a value for each item of the third kind.
    ThirdVector = 19,        ///< 3 columns.
    ThirdSixA = 20,          ///< 6 columns.
    ThirdSixB = 21,          ///< 6 columns.
    FourthScalarA = 22,      ///< 1 column: a value for each item of the fourth kind.
    FourthScalarB = 23,      ///< 1 column.
    FourthVector = 24,       ///< 3 columns.
    FourthSixA = 25,         ///< 6 columns.
    FourthSixB = 26,         ///< 6 columns.
    NodeIds = 27,            ///< 1 column, "Node Ids": the application's id of each node.
    ElementIds = 28,         ///< 1 column, "Element IDs": the application's id of each element.
    DisplacementVector = 29, ///< 3 columns, "Displacement": translation of each node.
    DisplacementSix = 30,    ///< 6 columns, "Displacement": translation and rotation of each node.
};

} // namespace Qel::Mox2
