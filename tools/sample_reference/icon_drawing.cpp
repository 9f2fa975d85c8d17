#include "icon_drawing.h"

#include <QPainter>
#include <QPainterPath>

#include <map>

namespace tally::sample {
namespace {

/// Draws on a square of 100 by 100, with `colour` as the brush and a darker outline.
using Drawing = void (*)(QPainter &painter, const QColor &colour);

void polygon(QPainter &painter, std::initializer_list<QPointF> points)
{
    painter.drawPolygon(points.begin(), static_cast<int>(points.size()));
}

void draw_gem(QPainter &painter, const QColor &colour)
{
    polygon(painter, {{25, 20}, {75, 20}, {94, 42}, {50, 90}, {6, 42}});
    painter.setBrush(colour.lighter(135));
    polygon(painter, {{32, 42}, {50, 20}, {68, 42}, {50, 90}});
    painter.drawLine(6, 42, 94, 42);
}

void draw_clock(QPainter &painter, const QColor &colour)
{
    painter.drawEllipse(QPointF(50, 50), 42, 42);
    painter.setBrush(colour.lighter(165));
    painter.drawEllipse(QPointF(50, 50), 31, 31);
    painter.drawLine(50, 50, 50, 27);
    painter.drawLine(50, 50, 66, 60);
}

void draw_hide(QPainter &painter, const QColor &)
{
    QPainterPath path(QPointF(14, 14));
    path.quadTo(50, 34, 86, 14);
    path.quadTo(66, 50, 88, 84);
    path.quadTo(50, 66, 12, 84);
    path.quadTo(34, 50, 14, 14);
    painter.drawPath(path);
}

void draw_ingot(QPainter &painter, const QColor &colour)
{
    polygon(painter, {{8, 78}, {24, 46}, {76, 46}, {92, 78}});
    painter.setBrush(colour.lighter(130));
    polygon(painter, {{24, 46}, {36, 28}, {64, 28}, {76, 46}});
}

void draw_bone(QPainter &painter, const QColor &)
{
    QPainterPath path;
    path.addRoundedRect(18, 41, 64, 18, 6, 6);
    for (const QPointF &end :
         {QPointF(18, 38), QPointF(18, 62), QPointF(82, 38), QPointF(82, 62)}) {
        QPainterPath knob;
        knob.addEllipse(end, 13, 13);
        path = path.united(knob);
    }
    painter.translate(50, 50);
    painter.rotate(-35);
    painter.translate(-50, -50);
    painter.drawPath(path);
}

void draw_plank(QPainter &painter, const QColor &colour)
{
    for (const int top : {20, 42, 64}) {
        painter.setBrush(colour.lighter(90 + top));
        painter.drawRoundedRect(10, top, 80, 17, 4, 4);
    }
}

void draw_block(QPainter &painter, const QColor &colour)
{
    polygon(painter, {{10, 36}, {50, 54}, {50, 92}, {10, 72}});
    painter.setBrush(colour.darker(120));
    polygon(painter, {{90, 36}, {50, 54}, {50, 92}, {90, 72}});
    painter.setBrush(colour.lighter(130));
    polygon(painter, {{10, 36}, {50, 18}, {90, 36}, {50, 54}});
}

void draw_sheaf(QPainter &painter, const QColor &)
{
    painter.drawLine(50, 92, 50, 20);
    for (const int y : {20, 36, 52, 68}) {
        painter.drawEllipse(QPointF(36, y), 9, 6);
        painter.drawEllipse(QPointF(64, y), 9, 6);
    }
    painter.drawEllipse(QPointF(50, 13), 6, 9);
}

void draw_coin(QPainter &painter, const QColor &colour)
{
    painter.drawEllipse(QPointF(50, 50), 40, 40);
    painter.setBrush(colour.lighter(130));
    painter.drawEllipse(QPointF(50, 50), 29, 29);
    painter.drawRect(43, 36, 14, 28);
}

void draw_book(QPainter &painter, const QColor &colour)
{
    painter.drawRoundedRect(18, 12, 64, 76, 6, 6);
    painter.setBrush(colour.lighter(150));
    painter.drawRect(30, 26, 40, 12);
    painter.drawLine(28, 12, 28, 88);
}

void draw_key(QPainter &painter, const QColor &)
{
    QPainterPath path;
    path.addEllipse(QPointF(28, 50), 22, 22);
    path.addEllipse(QPointF(28, 50), 10, 10);
    QPainterPath shaft;
    shaft.addRect(48, 44, 46, 12);
    shaft.addRect(70, 54, 8, 18);
    shaft.addRect(84, 54, 8, 14);
    shaft.setFillRule(Qt::WindingFill);
    painter.drawPath(path.united(shaft));
}

void draw_shield(QPainter &painter, const QColor &colour)
{
    QPainterPath path(QPointF(50, 8));
    path.quadTo(68, 20, 88, 20);
    path.quadTo(88, 70, 50, 92);
    path.quadTo(12, 70, 12, 20);
    path.quadTo(32, 20, 50, 8);
    painter.drawPath(path);
    painter.setBrush(colour.lighter(145));
    polygon(painter, {{50, 28}, {70, 50}, {56, 50}, {56, 72}, {44, 72}, {44, 50}, {30, 50}});
}

void draw_chest(QPainter &painter, const QColor &colour)
{
    painter.drawRoundedRect(10, 46, 80, 42, 5, 5);
    QPainterPath lid(QPointF(10, 46));
    lid.quadTo(10, 16, 50, 16);
    lid.quadTo(90, 16, 90, 46);
    lid.closeSubpath();
    painter.setBrush(colour.lighter(125));
    painter.drawPath(lid);
    painter.setBrush(QColor(0xf0c84a));
    painter.drawRoundedRect(41, 40, 18, 20, 4, 4);
}

void draw_parcel(QPainter &painter, const QColor &colour)
{
    painter.drawRoundedRect(14, 24, 72, 62, 5, 5);
    painter.setBrush(colour.lighter(145));
    painter.drawRect(43, 24, 14, 62);
    painter.drawRect(14, 46, 72, 12);
}

void draw_flask(QPainter &painter, const QColor &colour)
{
    painter.setBrush(QColor(0xdfe9ee));
    polygon(painter, {{40, 12}, {60, 12}, {60, 38}, {88, 86}, {12, 86}, {40, 38}});
    painter.setBrush(colour);
    polygon(painter, {{31, 56}, {69, 56}, {86, 86}, {14, 86}});
}

void draw_statue(QPainter &painter, const QColor &colour)
{
    painter.drawEllipse(QPointF(50, 30), 18, 20);
    QPainterPath bust(QPointF(20, 76));
    bust.quadTo(22, 52, 50, 50);
    bust.quadTo(78, 52, 80, 76);
    bust.closeSubpath();
    painter.drawPath(bust);
    painter.setBrush(colour.darker(140));
    painter.drawRect(26, 76, 48, 14);
}

const std::map<Motif, Drawing> &drawings()
{
    static const std::map<Motif, Drawing> all = {
        {Motif::Gem, draw_gem},       {Motif::Clock, draw_clock},   {Motif::Hide, draw_hide},
        {Motif::Ingot, draw_ingot},   {Motif::Bone, draw_bone},     {Motif::Plank, draw_plank},
        {Motif::Block, draw_block},   {Motif::Sheaf, draw_sheaf},   {Motif::Coin, draw_coin},
        {Motif::Book, draw_book},     {Motif::Key, draw_key},       {Motif::Shield, draw_shield},
        {Motif::Chest, draw_chest},   {Motif::Parcel, draw_parcel}, {Motif::Flask, draw_flask},
        {Motif::Statue, draw_statue},
    };
    return all;
}

template <typename Draw>
QImage picture(const QColor &colour, Draw draw)
{
    QImage image(icon_size, icon_size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(icon_size / 100.0, icon_size / 100.0);
    painter.setPen(QPen(colour.darker(210), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colour);
    draw(painter);
    return image;
}

/// The three crests that tell neighbours of one hue apart.
void draw_crest(QPainter &painter, int kind)
{
    if (kind == 0)
        return;
    QPainterPath crest(QPointF(26, 40));
    crest.cubicTo(22, 4, 78, 4, 74, 40);
    if (kind == 1)
        crest.cubicTo(66, 18, 34, 18, 26, 40);
    else
        crest.cubicTo(90, 62, 92, 70, 90, 84);
    painter.drawPath(crest);
}

QImage helmet(const QColor &ground, const QColor &metal, const QColor &crest, int kind)
{
    return picture(ground, [&](QPainter &painter) {
        painter.drawEllipse(QPointF(50, 50), 46, 46);
        painter.setBrush(crest);
        draw_crest(painter, kind);
        QPainterPath bowl(QPointF(26, 84));
        bowl.cubicTo(20, 10, 80, 10, 74, 84);
        bowl.lineTo(60, 84);
        bowl.lineTo(57, 56);
        bowl.lineTo(50, 64);
        bowl.lineTo(43, 56);
        bowl.lineTo(40, 84);
        bowl.closeSubpath();
        painter.setBrush(metal);
        painter.drawPath(bowl);
        painter.setBrush(ground.darker(320));
        painter.drawEllipse(QPointF(38, 51), 7, 4);
        painter.drawEllipse(QPointF(62, 51), 7, 4);
    });
}

} // namespace

QImage item_icon(Motif motif, QColor colour)
{
    return picture(colour, [&](QPainter &painter) { drawings().at(motif)(painter, colour); });
}

QImage hero_icon(int index)
{
    // The golden angle keeps neighbours apart.
    const int hue = index * 137 % 360;
    const QColor metal = index % 2 == 0 ? QColor(0xd9b45b) : QColor(0xc3cad4);
    return helmet(QColor::fromHsv(hue, 120, 190), metal,
                  QColor::fromHsv((hue + 180) % 360, 170, 200), index % 3);
}

QImage unknown_hero_icon()
{
    return helmet(QColor(0x6b7078), QColor(0x9aa0a8), QColor(0x9aa0a8), 0);
}

} // namespace tally::sample
