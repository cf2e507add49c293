#include "WeekView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace kolvane::studio {

namespace {

constexpr int kLabelWidth = 96;
constexpr int kRowHeight = 24;
constexpr int kAxisHeight = 18;
constexpr int kMinutesPerDay = 24 * 60;
constexpr int kRightMargin = 20;  // room for the last hour's label

}  // namespace

WeekView::WeekView(const frmSchedule& form, std::function<void(int day)> choose, QWidget* parent)
    : QWidget(parent), form_(form), choose_(std::move(choose)) {
  setObjectName("weekView");
  setFocusPolicy(Qt::StrongFocus);
  setMinimumHeight(kAxisHeight + kRowHeight);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize WeekView::sizeHint() const {
  const int rows = std::max<int>(1, static_cast<int>(form_.Schedule().days.size()));
  return {kLabelWidth + 24 * 24, kAxisHeight + rows * kRowHeight + 2};
}

QRect WeekView::Track(int row) const {
  return {kLabelWidth, kAxisHeight + row * kRowHeight, width() - kLabelWidth - kRightMargin,
          kRowHeight - 4};
}

QColor WeekView::ColourOf(const std::string& value) const {
  const auto states = form_.Schedule().States();
  if (!states.empty()) {
    const std::string shown = form_.Schedule().ValueText(value);
    const auto found = std::find(states.begin(), states.end(), shown);
    const int index = found == states.end() ? 0 : static_cast<int>(found - states.begin());
    static const QColor palette[] = {QColor(76, 175, 80),  QColor(158, 158, 158), QColor(255, 193, 7),
                                     QColor(33, 150, 243), QColor(156, 39, 176),  QColor(255, 87, 34)};
    return palette[index % 6];
  }
  // Setpoints from 10 (blue) to 30 (red) in the catalogue's unit.
  bool ok = false;
  const double number = QString::fromStdString(value).toDouble(&ok);
  const double share = ok ? std::clamp((number - 10.0) / 20.0, 0.0, 1.0) : 0.0;
  return QColor::fromHsvF(0.66 * (1.0 - share), 0.55, 0.95);
}

void WeekView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  const auto& days = form_.Schedule().days;
  const int span = std::max(1, width() - kLabelWidth - kRightMargin);
  const auto x_of = [&](int minutes) { return kLabelWidth + span * minutes / kMinutesPerDay; };
  // The time axis: every three hours.
  painter.setPen(palette().color(QPalette::Mid));
  for (int hour = 0; hour <= 24; hour += 3) {
    const int x = x_of(hour * 60);
    painter.drawLine(x, kAxisHeight - 4, x, height());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(x - 20, 0, 40, kAxisHeight - 4), Qt::AlignCenter,
                     QString("%1:00").arg(hour, 2, 10, QChar('0')));
    painter.setPen(palette().color(QPalette::Mid));
  }
  for (size_t row = 0; row < days.size(); ++row) {
    const QRect track = Track(static_cast<int>(row));
    const bool current = static_cast<int>(row) == form_.CurrentDay();
    painter.setPen(palette().color(QPalette::Text));
    QFont font = painter.font();
    font.setBold(current);
    painter.setFont(font);
    painter.drawText(QRect(4, track.top(), kLabelWidth - 8, track.height()), Qt::AlignVCenter,
                     QString::fromStdString(schedule::Schedule::DayLabel(days[row])));
    const auto& points = days[row].points;
    for (size_t i = 0; i < points.size(); ++i) {
      const int end = i + 1 < points.size() ? points[i + 1].minutes : kMinutesPerDay;
      const QRect band(x_of(points[i].minutes), track.top(), x_of(end) - x_of(points[i].minutes),
                       track.height());
      painter.fillRect(band, ColourOf(points[i].value));
      const QString text = QString::fromStdString(form_.Schedule().ValueText(points[i].value));
      if (painter.fontMetrics().horizontalAdvance(text) + 6 < band.width()) {
        painter.setPen(Qt::black);
        painter.drawText(band.adjusted(3, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text);
      }
    }
    painter.setPen(current ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid));
    painter.drawRect(track);
  }
  if (hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void WeekView::mousePressEvent(QMouseEvent* event) {
  const int row = (static_cast<int>(event->position().y()) - kAxisHeight) / kRowHeight;
  if (row >= 0 && row < static_cast<int>(form_.Schedule().days.size())) choose_(row);
  setFocus();
}

void WeekView::keyPressEvent(QKeyEvent* event) {
  const int days = static_cast<int>(form_.Schedule().days.size());
  const int current = form_.CurrentDay();
  if (event->key() == Qt::Key_Down && current + 1 < days) {
    choose_(current + 1);
  } else if (event->key() == Qt::Key_Up && current > 0) {
    choose_(current - 1);
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace kolvane::studio
