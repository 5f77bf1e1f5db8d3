meta:
  id: mox
  title: Finite-element model in a MOX file
  file-extension: mox
  ks-version: "0.10"
  endian: le
doc: |
  The container and the records of version "1.3", as docs/format describes them, for readers that Kaitai Struct
  generates. It reads sound files; what a reader does with others is in rules.md.

  Three things can't be said here and are left to the program that uses the generated classes:

  - A stream is all blocks of one name, inflated and joined. If a stream has one block, `as_mox_tree` and so on of its
    block read it. If it has several, join their contents and read the result as `mox_tree`, `light_data`,
    `attributes`, `resources` or `global_information`.
  - The numbers of a dataset are in byte planes: `numbers` reads the planes, and byte b of the number in row i and
    column c is `columns[c].planes[b][i]`. The element type of the dataset says whether the four bytes are a float.
  - Blocks that lie too low (container.md): here, each block follows the one before it.
doc-ref: README.md
seq:
  - id: signature
    contents: [0x89, 0x54, 0x4e, 0x46, 0x0d, 0x0a, 0x1a, 0x0a]
  - id: version
    contents: [0x31, 0x2e, 0x33, 0x00]
  - id: len_head_index
    type: u4
    valid: 2784
    doc: 0 in a file that was never closed.
  - id: head_index
    type: index_table
    size: len_head_index
  - id: first_part
    type: part(head_index)

types:
  # The container

  index_table:
    seq:
      - id: num_records
        type: u4
        doc: 20 in the head index, 200 in an Index Block.
      - id: records
        type: index_record
        repeat: expr
        repeat-expr: num_records

  index_record:
    seq:
      - id: number
        type: u1
        doc: The id of the block + 1, in 8 bits.
      - id: len_name
        type: u4
        valid: 128
      - id: name
        type: strz
        size: 128
        encoding: ISO-8859-1
      - id: len_block
        type: u4
        doc: Bytes in the file.
      - id: flags
        type: u1
      - id: reserved
        type: u1
    instances:
      is_compressed:
        value: (flags & 0x01) != 0 and not is_index_block
      is_freezable:
        value: (flags & 0x20) != 0
      is_index_block:
        value: 'name.length >= 13 and name.substring(0, 13) == "\u000bIndex Block "'
      is_empty_entry:
        value: 'name.length >= 13 and name.substring(0, 13) == "\u000bEmpty Block "'

  part:
    doc: The blocks that one index table describes, and those of the tables after it.
    params:
      - id: table
        type: index_table
    seq:
      - id: blocks
        type: block(table.records[_index])
        repeat: expr
        repeat-expr: table.num_records
      - id: next
        type: part(blocks.last.body.table)
        if: blocks.last.record.is_index_block

  block:
    params:
      - id: record
        type: index_record
    seq:
      - id: body
        type: block_body(record)
        size: record.len_block
    instances:
      as_mox_tree:
        io: body.content._io
        pos: 0
        type: mox_tree
        if: record.name == "Mox Tree"
      as_attributes:
        io: body.content._io
        pos: 0
        type: attributes
        if: record.name == "Attributes"
      as_resources:
        io: body.content._io
        pos: 0
        type: resources
        if: record.name == "Resources"
      as_global_information:
        io: body.content._io
        pos: 0
        type: global_information
        if: record.name == "Global Information"

  block_body:
    params:
      - id: record
        type: index_record
    seq:
      - id: table
        type: index_table
        if: record.is_index_block
      - id: len_content
        type: u4
        if: record.is_compressed and record.len_block != 0
        doc: A compressed block of length 0 has lost its content.
      - id: content
        type: bytes
        size-eos: true
        process: zlib
        if: record.is_compressed and record.len_block != 0
      - id: plain
        type: bytes
        size-eos: true
        if: not record.is_compressed and not record.is_index_block

  bytes:
    seq:
      - id: bytes
        size-eos: true

  # Types

  text:
    seq:
      - id: len
        type: u4
      - id: value
        size: len
        doc: UTF-8 by convention, but any bytes can occur.

  word:
    doc: A text that is compared with those that the format knows.
    seq:
      - id: len
        type: u4
      - id: value
        type: str
        size: len
        encoding: ISO-8859-1

  list_of_u1:
    seq:
      - id: len
        type: u4
      - id: items
        type: u1
        repeat: expr
        repeat-expr: len

  list_of_u4:
    seq:
      - id: len
        type: u4
      - id: items
        type: u4
        repeat: expr
        repeat-expr: len

  list_of_f4:
    seq:
      - id: len
        type: u4
      - id: items
        type: f4
        repeat: expr
        repeat-expr: len

  list_of_f8:
    seq:
      - id: len
        type: u4
      - id: items
        type: f8
        repeat: expr
        repeat-expr: len

  list_of_text:
    seq:
      - id: len
        type: u4
      - id: items
        type: text
        repeat: expr
        repeat-expr: len

  # Stream "Mox Tree"

  mox_tree:
    seq:
      - id: num_nodes
        type: u4
      - id: nodes
        type: node
        repeat: expr
        repeat-expr: num_nodes

  node:
    seq:
      - id: id
        type: u4
      - id: parent
        type: u4
      - id: previous
        type: u4
      - id: next
        type: u4
      - id: first_child
        type: u4
      - id: last_child
        type: u4
      - id: name
        type: text
      - id: type
        type: word
      - id: version
        type: word
      - id: ofs_light_data
        type: u8

  # Stream "Light Data"

  light_data:
    doc: One descriptor for each node; that of a shape or a plain node is empty.
    params:
      - id: tree
        type: mox_tree
    seq:
      - id: descriptors
        type: descriptor(tree.nodes[_index].type.value)
        repeat: expr
        repeat-expr: tree.num_nodes

  descriptor:
    params:
      - id: node_type
        type: str
    seq:
      - id: body
        type:
          switch-on: node_type
          cases:
            '"Group"': group
            '"Geometry"': geometry
            '"NodeSets"': node_sets

  group:
    doc: Of version "0.4".
    seq:
      - id: translation
        type: f4
        repeat: expr
        repeat-expr: 3
      - id: rotation
        type: f4
        repeat: expr
        repeat-expr: 4
        doc: The axis, then the angle.
      - id: scale
        type: f4
        repeat: expr
        repeat-expr: 3
      - id: kind
        type: u1

  geometry:
    doc: Of version "0.7".
    seq:
      - id: num_datasets
        type: u4
      - id: datasets
        type: dataset
        repeat: expr
        repeat-expr: num_datasets

  dataset:
    seq:
      - id: key
        type: text
        doc: The name; or the name, the byte 0x1E and the name of the step.
      - id: type_word
        type: u4
      - id: is_link
        type: u1
      - id: link
        type: link
        if: is_link != 0
      - id: array
        type: array
        if: is_link == 0
      - id: is_vibration
        type: u1
    instances:
      variable_type:
        value: type_word & 0xffffff
      element_type:
        value: type_word >> 24
        enum: element

  link:
    seq:
      - id: node
        type: u4
        doc: The id of the geometry that has the other dataset.
      - id: index
        type: u4
        doc: The place of the other dataset in that geometry, from 0.

  array:
    seq:
      - id: len_numbers
        type: u4
        doc: Bytes; rows x width x 4.
      - id: width
        type: u1
      - id: unknown_a
        type: u1
      - id: unknown_b
        type: u1
      - id: unknown_c
        type: f4
      - id: unknown_d
        type: f4
      - id: unknown_e
        type: u1
      - id: ofs_heavy_data
        type: u8

  node_sets:
    seq:
      - id: len_body
        type: u4
      - id: body
        type: node_sets_body
        size: len_body

  node_sets_body:
    seq:
      - id: num_sets
        type: u4
      - id: ofs_heavy_data
        type: u8
      - id: len_payload
        type: u4

  # Stream "Attributes"

  attributes:
    seq:
      - id: records
        type: attribute_record
        repeat: eos

  attribute_record:
    doc: The values of a kind are in its list, in the order of their keys.
    seq:
      - id: keys
        type: list_of_text
      - id: kinds
        type: list_of_u1
        doc: 0 integer, 1 float, 2 text, 3 double.
      - id: integers
        type: list_of_u4
      - id: floats
        type: list_of_f4
      - id: doubles
        type: list_of_f8
      - id: texts
        type: list_of_text

  # Stream "Resources"

  resources:
    seq:
      - id: materials
        type: material
        repeat: eos

  material:
    seq:
      - id: len_record
        type: u4
        doc: With these four bytes.
      - id: body
        type: material_body
        size: len_record - 4

  material_body:
    seq:
      - id: version
        type: word
      - id: diffuse
        type: f4
        repeat: expr
        repeat-expr: 4
      - id: specular
        type: f4
        repeat: expr
        repeat-expr: 4
      - id: emissive
        type: f4
        repeat: expr
        repeat-expr: 4
        doc: The fourth value means nothing.
      - id: ambient
        type: f4
        repeat: expr
        repeat-expr: 4
      - id: transparency
        type: f4
      - id: shininess
        type: f4
        if: version.value != "0.1"
      - id: flag
        type: u1
        if: version.value != "0.1" and version.value != "0.2"

  # Stream "Global Information"

  global_information:
    seq:
      - id: num_saves
        type: u4
      - id: saves
        type: save
        repeat: expr
        repeat-expr: num_saves
      - id: num_result_attributes
        type: u4
        doc: 0; what would follow any other count is not known.

  save:
    seq:
      - id: len_record
        type: u4
        doc: With these four bytes.
      - id: body
        type: save_body
        size: len_record - 4

  save_body:
    seq:
      - id: version
        type: text
      - id: source_name
        type: text
      - id: source_version
        type: text
      - id: format_version
        type: text
      - id: date
        type: text
      - id: computer
        type: text
      - id: user
        type: text
      - id: comment
        type: text

  # Stream "Heavy Data"

  numbers:
    doc: The numbers of a dataset, from its position in "Heavy Data" on.
    params:
      - id: num_rows
        type: u4
      - id: width
        type: u1
    seq:
      - id: columns
        type: column(num_rows)
        repeat: expr
        repeat-expr: width

  column:
    params:
      - id: num_rows
        type: u4
    seq:
      - id: planes
        size: num_rows
        repeat: expr
        repeat-expr: 4
        doc: The lowest byte of each number, then the second, the third and the highest.

  node_sets_payload:
    seq:
      - id: name_offsets
        type: list_of_u4
      - id: names
        type: text
      - id: member_offsets
        type: list_of_u4
      - id: firsts
        type: list_of_u4
      - id: seconds
        type: list_of_u4

enums:
  element:
    1: f32
    5: u32
