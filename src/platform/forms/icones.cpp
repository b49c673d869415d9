#include "platform/forms/icones.h"

#include "core/literais.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace {

// Renders at the size asked for; "currentColor" in the drawing stands for the palette's text colour.
class MotorSvg : public QIconEngine {
public:
    MotorSvg(QByteArray svg, const QPalette &paleta) : m_svg(std::move(svg)), m_paleta(paleta) {}

    void paint(QPainter *pintor, const QRect &area, QIcon::Mode modo, QIcon::State) override {
        const auto grupo = modo == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto papel = modo == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        QByteArray pintado = m_svg;
        pintado.replace("currentColor", m_paleta.color(grupo, papel).name().toLatin1());
        QSvgRenderer(pintado).render(pintor, QRectF(area));
    }
    QPixmap pixmap(const QSize &tamanho, QIcon::Mode modo, QIcon::State estadoIcone) override {
        QPixmap imagem(tamanho);
        imagem.fill(Qt::transparent);
        QPainter pintor(&imagem);
        paint(&pintor, QRect(QPoint(), tamanho), modo, estadoIcone);
        return imagem;
    }
    QIconEngine *clone() const override { return new MotorSvg(m_svg, m_paleta); }

private:
    QByteArray m_svg;
    QPalette m_paleta;
};

} // namespace

QIcon icones::icone(const QString &nome, const QPalette &paleta) {
    QFile ficheiro(u":/icones/"_s + nome + u".svg");
    if (nome.isEmpty() || !ficheiro.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new MotorSvg(ficheiro.readAll(), paleta));
}
