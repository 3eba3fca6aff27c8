// A chart in a window, drawn anew when its data or its room are others.
#pragma once

#include <QWidget>

#include "platform/chart.h"

namespace tpv::qt {

class ChartWidget : public QWidget {
 public:
  explicit ChartWidget(QWidget* parent);
  void Show(const ChartData& data);
  const ChartData& data() const { return data_; }

  QSize sizeHint() const override { return {460, 220}; }
  QSize minimumSizeHint() const override { return {260, 150}; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  ChartData data_;
};

}  // namespace tpv::qt
