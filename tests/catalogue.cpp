#include "tests/catalogue.h"

namespace tests {
namespace {

constexpr char CR[] = "\r";

// NOTE: the texts are kept word for word, with "an quadrangle",
// "inbetween", "with a each", the mixed colour/color and the blank that ends
// the first line of the last question.
std::string Description(int index) {
  switch (index) {
    case 0: return "You should see 2 boxes with a moving point inside each.";
    case 1: return "You should see a point (of circular/quadrangular shape), zooming in.";
    case 2: return "You should see 2 boxes with a moving word inside each.";
    case 3: return "You should see 2 boxes with a moving and spinning Cube inside each.";
    case 4: return "You should see 2 boxes with a moving and spinning wireframe inside each.";
    case 5:
      return std::string("You should see 2 boxes with a spinning quadrangle inside each.") + CR +
             "If there are any diagonals visible the hidden line function does not work properly." +
             CR + "You should see only the edges of an quadrangle.";
    case 6:
      return std::string("You should see 2 boxes with changing colours.") + CR +
             "The color sequence should be: red-white-green-black-blue";
    case 7:
      return std::string("You should see 2 boxes with a spinning square inside each.") + CR +
             "Both squares should have a red, green, blue and a white corner smoothly coloured.";
    case 8:
      return std::string("You should see a square with one corner point coloured light grey,") + CR +
             " the opposite corner point coloured white and inbetween a smooth light grey filling?";
    case 9:
      return std::string(
                 "You should see 2 spinning and moving connected pyramids, one is solid, the other "
                 "one is a wireframe.") +
             CR + "The top of the solid pyramid should be green, its bottom should be blue." + CR +
             "The edges of the wireframe pyramid should be black, its corner points should be red.";
    case 10:
      return std::string(
                 "You should see 800 spinning connected pyramids, with a each pyramid composed of a "
                 "solid part and a wireframe.") +
             CR + "The top of the solid part should be green, its bottom should be blue." + CR +
             "The edges of the wireframe part should be black, its corner points should be red.";
    case 11: return "You should see 800 connected pyramids, zooming in.";
    case 12:
      return std::string("You should see two windows with a white square inside each.") + CR +
             "Click into the left window to set the squares position. Move the mouse over the right "
             "window to test." +
             CR + "If there are two different squares sequentially visible in the right window" + CR +
             "this indicates an update problem.";
  }
  return {};
}

std::string Question(int index) {
  switch (index) {
    case 0: return "Did you see 2 boxes with a moving point inside each?";
    case 1: return "Did you see a point (of circular/quadrangular shape), zooming in?";
    case 2: return "Did you see 2 boxes with a moving word inside each?";
    case 3: return "Did you see 2 boxes with a moving and spinning Cube inside each?";
    case 4: return "Did you see 2 boxes with a moving and spinning wireframe inside each?";
    case 5:
      return std::string("Did you see 2 boxes with a spinning quadrangle inside each?") + CR +
             "If there are any diagonals visible the hidden line function does not work properly." +
             CR + "Did you see only the edges of an quadrangle?";
    case 6:
      return std::string("Did you see 2 boxes with changing colours?") + CR +
             "The color sequence should be: red-white-green-black-blue";
    case 7:
      return std::string("Did you see 2 boxes with a spinning square inside each?") + CR +
             "Both squares should have a red, green, blue and a white corner smoothly coloured.";
    case 8:
      return std::string("Did you see a square with one corner point coloured light grey,") + CR +
             " the opposite corner point coloured white and inbetween a smooth light grey filling?";
    case 9:
      return std::string(
                 "Did you see 2 spinning and moving connected pyramids, one is solid the other one "
                 "is a wireframe?") +
             CR + "The top of the solid pyramid should be green, its bottom should be blue." + CR +
             "The edges of the wireframe pyramid should be black, its corner points should be red.";
    case 10:
      return std::string(
                 "Did you see 800 spinning connected pyramids, with a each pyramid composed of a "
                 "solid part and a wireframe?") +
             CR + "The top of the solid part should be green, its bottom should be blue." + CR +
             "The edges of the wireframe part should be black, its corner points should be red.";
    case 11: return "Did you see 800 connected pyramids, zooming in?";
    case 12:
      return std::string(
                 "If you could see 2 different (flickering) positions of the point in the right "
                 "window - ") +
             CR + "answer NO." + CR + "Did you see two windows with a white square inside each?";
  }
  return {};
}

}  // namespace

std::string TestText(int32_t index, int16_t kind) {
  if (index < 0 || index >= kTestCount) return {};
  return kind == 0 ? Question(index) : kind == 1 ? Description(index) : std::string();
}

}  // namespace tests
