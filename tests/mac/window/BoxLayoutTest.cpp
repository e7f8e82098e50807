// Rows and columns by their numbers.
#include "Platform/window/mac/BoxLayout.h"

#include <gtest/gtest.h>

#include <string>

namespace halvorn {
namespace {

class BoxLayoutTest : public testing::Test {
 protected:
  // A view of that size, which shows where it was placed.
  Box view(double width, double height, int stretch = 0) {
    const std::size_t number = places.size();
    places.emplace_back();
    shown.push_back(true);
    Box box;
    box.kind = Box::Kind::View;
    box.stretch = stretch;
    box.needed = [=](double) { return Extent{width, height}; };
    box.isShown = [this, number] { return shown[number] != 0; };
    box.place = [this, number](const Rect& place) { places[number] = place; };
    return box;
  }
  static Box space(double size = 0) {
    Box box;
    box.kind = Box::Kind::Space;
    box.size = size;
    return box;
  }
  static Box many(Box::Kind kind, std::vector<Box> children, double spacing = 0) {
    Box box;
    box.kind = kind;
    box.spacing = spacing;
    box.children = std::move(children);
    return box;
  }

  std::vector<Rect> places;
  std::vector<char> shown;
};

TEST_F(BoxLayoutTest, ARowPlacesItsViewsOneBehindTheOtherAndInTheMiddle) {
  const Box row = many(Box::Kind::Row, {view(50, 20), view(30, 10)}, 8);
  placeBox(row, {10, 20, 200, 40}, Direction::LeftToRight);
  EXPECT_EQ(places[0], (Rect{10, 30, 50, 20}));
  EXPECT_EQ(places[1], (Rect{68, 35, 30, 10}));
}

TEST_F(BoxLayoutTest, ASpaceWithoutASizeTakesWhatIsLeft) {
  const Box row = many(Box::Kind::Row, {view(50, 20), space(), view(30, 20)}, 6);
  placeBox(row, {0, 0, 300, 20}, Direction::LeftToRight);
  EXPECT_EQ(places[1], (Rect{270, 0, 30, 20}));
}

TEST_F(BoxLayoutTest, ARowRunsTheOtherWayWhereItIsReadSo) {
  const Box row = many(Box::Kind::Row, {view(50, 20), space(), view(30, 20)}, 6);
  placeBox(row, {0, 0, 300, 20}, Direction::RightToLeft);
  EXPECT_EQ(places[0], (Rect{250, 0, 50, 20}));
  EXPECT_EQ(places[1], (Rect{0, 0, 30, 20}));
}

TEST_F(BoxLayoutTest, WhatIsHiddenTakesNoRoomAndNoSpacing) {
  const Box row = many(Box::Kind::Row, {view(50, 20), view(40, 20), view(30, 20)}, 10);
  shown[1] = false;
  placeBox(row, {0, 0, 300, 20}, Direction::LeftToRight);
  EXPECT_EQ(places[2].x, 60);
  EXPECT_EQ(neededBy(row, 300).width, 90);
  shown[0] = false;
  placeBox(row, {0, 0, 300, 20}, Direction::LeftToRight);
  EXPECT_EQ(places[2].x, 0);
}

TEST_F(BoxLayoutTest, AColumnGivesWhatIsLeftToThoseThatStretch) {
  const Box column = many(Box::Kind::Column, {view(10, 20), view(10, 30, 1), view(10, 40, 3)});
  placeBox(column, {0, 0, 100, 190}, Direction::LeftToRight);
  EXPECT_EQ(places[0], (Rect{0, 0, 100, 20}));
  EXPECT_EQ(places[1], (Rect{0, 20, 100, 55}));
  EXPECT_EQ(places[2], (Rect{0, 75, 100, 115}));
}

TEST_F(BoxLayoutTest, MarginsAreAroundEverythingAndSpacesCount) {
  Box column = many(Box::Kind::Column, {view(10, 20), space(12), view(30, 20)});
  column.left = 5;
  column.top = 6;
  column.right = 7;
  column.bottom = 8;
  EXPECT_EQ(neededBy(column, 100).height, 66);
  EXPECT_EQ(neededBy(column, 100).width, 42);
  placeBox(column, {0, 0, 100, 66}, Direction::LeftToRight);
  EXPECT_EQ(places[0], (Rect{5, 6, 88, 20}));
  EXPECT_EQ(places[1], (Rect{5, 38, 88, 20}));
}

TEST_F(BoxLayoutTest, TooLittleRoomMakesNoNegativeSizes) {
  const Box row = many(Box::Kind::Row, {view(50, 20), view(30, 20, 1)}, 10);
  placeBox(row, {0, 0, 40, 10}, Direction::LeftToRight);
  EXPECT_GE(places[1].width, 0);
  EXPECT_GE(places[0].height, 0);
}

TEST_F(BoxLayoutTest, AColumnOfHiddenViewsIsNoneInItsRow) {
  Box row = many(Box::Kind::Row, {many(Box::Kind::Column, {view(10, 10)}), view(30, 20)}, 10);
  shown[0] = false;
  placeBox(row, {0, 0, 100, 20}, Direction::LeftToRight);
  EXPECT_EQ(places[1].x, 0);
}

}  // namespace
}  // namespace halvorn
