#include "look/style/Shapes.h"

#include "look/controls/Glyphs.h"
#include "look/style/Colours.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

// The painter counts in fractions of a pixel: one of them is no blur.
bool isClose(QRgb one, QRgb other) {
    return qAbs(qRed(one) - qRed(other)) <= 2 && qAbs(qGreen(one) - qGreen(other)) <= 2 &&
           qAbs(qBlue(one) - qBlue(other)) <= 2;
}

TEST(ShapesTest, border_stays_one_whole_line_at_every_scale) {
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.25, 3.0}) {
        QImage image(qRound(120 * scale), qRound(60 * scale), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(look::colours::window);
        QPainter painter(&image);
        look::drawBordered(painter, QRectF(11, 11, 97, 33), 7, look::colours::well,
                           look::colours::border);
        painter.end();
        const int line = qMax(1, int(scale));
        const int middle = image.height() / 2;
        int onLine = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = image.pixel(x, middle);
            onLine += isClose(colour, look::colours::border);
            EXPECT_TRUE(isClose(colour, look::colours::border) ||
                        isClose(colour, look::colours::well) ||
                        isClose(colour, look::colours::window))
                << "a blurred edge at scale " << scale << ", column " << x;
        }
        EXPECT_EQ(onLine, 2 * line) << scale;
    }
}

TEST(ShapesTest, rounded_region_touches_every_pixel_of_the_shape) {
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(look::colours::window);
    QPainter painter(&image);
    look::fillRounded(painter, QRectF(0, 0, 60, 40), 8, look::colours::white);
    painter.end();
    const QRegion region = look::roundedRegion(QRect(0, 0, 60, 40), 8);
    const auto isDrawn = [&](QPoint at) { return image.pixel(at) != look::colours::window; };
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 60; ++x)
            EXPECT_TRUE(region.contains(QPoint(x, y)) || !isDrawn({x, y})) << x << ", " << y;
    EXPECT_FALSE(region.contains(QPoint(0, 0)));
    EXPECT_FALSE(region.contains(QPoint(59, 39)));
}

TEST(ShapesTest, building_fills_its_box_and_has_windows) {
    const QPainterPath path = look::buildingPath();
    EXPECT_EQ(path.boundingRect(), QRectF(0, 2, 34, 30));
    EXPECT_TRUE(path.contains(QPointF(9, 15)));
    EXPECT_FALSE(path.contains(QPointF(5.5, 7.5)));
    EXPECT_FALSE(path.contains(QPointF(27, 19.5)));
    EXPECT_FALSE(path.contains(QPointF(19, 20)));
}

} // namespace
