#pragma once

#include <functional>

#include <QWidget>

#include "Kolvane.h"

namespace kolvane::studio {

// A schedule at a glance: one row per day, a time axis from 00:00 to 24:00, each state or
// setpoint drawn as a band in its own colour from its switching point to the next. A click on a
// row, or Up and Down, chooses the day the form's list shows.
class WeekView final : public QWidget {
  Q_OBJECT

 public:
  WeekView(const frmSchedule& form, std::function<void(int day)> choose, QWidget* parent);

  QSize sizeHint() const override;
  // The colour of a value: a state's by its place among the states, a setpoint's on a scale
  // from blue (cold) to red (warm).
  QColor ColourOf(const std::string& value) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QRect Track(int row) const;

  const frmSchedule& form_;
  std::function<void(int day)> choose_;
};

}  // namespace kolvane::studio
