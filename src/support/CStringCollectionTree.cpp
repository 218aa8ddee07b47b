// The red-black rules of the collection; lookup, positions and values are in CStringCollection.cpp.
#include "support/CStringCollection.h"

namespace ombrelian {

std::int32_t CStringCollection::unlink(std::int32_t y) {
  const std::int32_t x = Nodes[y].Left != 0 ? Nodes[y].Left : Nodes[y].Right;
  const std::int32_t parent = Nodes[y].Parent;
  // This is also necessary if x is the empty node, because DeleteFixup moves up from there.
  Nodes[x].Parent = parent;
  if (parent == 0) {
    Root = x;
  } else {
    child(parent, Nodes[parent].Right == y) = x;
  }
  return x;
}

/// Replaces `x` with its child on the other side; `x` becomes the child of that node on side
/// `right`.
void CStringCollection::rotate(std::int32_t x, bool right) {
  const std::int32_t y = child(x, !right);
  const std::int32_t inner = child(y, right);
  child(x, !right) = inner;
  if (inner != 0) Nodes[inner].Parent = x;
  const std::int32_t parent = Nodes[x].Parent;
  if (y != 0) Nodes[y].Parent = parent;
  if (parent == 0) {
    Root = y;
  } else {
    child(parent, Nodes[parent].Right == x) = y;
  }
  child(y, right) = x;
  Nodes[x].Parent = y;
}

void CStringCollection::InsertFixup(std::int32_t x) {
  while (x != Root && isRed(Nodes[x].Parent)) {
    std::int32_t parent = Nodes[x].Parent;
    const std::int32_t grandparent = Nodes[parent].Parent;
    const bool onRight = Nodes[grandparent].Right == parent;
    const std::int32_t uncle = child(grandparent, !onRight);
    if (isRed(uncle)) {
      Nodes[parent].Color = kBlack;
      Nodes[uncle].Color = kBlack;
      Nodes[grandparent].Color = kRed;
      x = grandparent;
      continue;
    }
    if (x == child(parent, !onRight)) {  // the inner child
      x = parent;
      rotate(x, onRight);
      parent = Nodes[x].Parent;
    }
    Nodes[parent].Color = kBlack;
    Nodes[grandparent].Color = kRed;
    rotate(grandparent, !onRight);
  }
  Nodes[Root].Color = kBlack;
}

void CStringCollection::DeleteFixup(std::int32_t x) {
  while (x != Root && Nodes[x].Parent != 0 && !isRed(x)) {
    const std::int32_t parent = Nodes[x].Parent;
    const bool onRight = Nodes[parent].Left != x;
    std::int32_t sibling = child(parent, !onRight);
    if (isRed(sibling)) {
      Nodes[sibling].Color = kBlack;
      Nodes[parent].Color = kRed;
      rotate(parent, onRight);
      sibling = child(parent, !onRight);
    }
    if (!isRed(Nodes[sibling].Left) && !isRed(Nodes[sibling].Right)) {
      Nodes[sibling].Color = kRed;
      x = parent;
      continue;
    }
    if (!isRed(child(sibling, !onRight))) {  // the far nephew
      Nodes[child(sibling, onRight)].Color = kBlack;
      Nodes[sibling].Color = kRed;
      rotate(sibling, !onRight);
      sibling = child(parent, !onRight);
    }
    Nodes[sibling].Color = Nodes[parent].Color;
    Nodes[parent].Color = kBlack;
    Nodes[child(sibling, !onRight)].Color = kBlack;
    rotate(parent, onRight);
    x = Root;
  }
  Nodes[x].Color = kBlack;
}

}  // namespace ombrelian
