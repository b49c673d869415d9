#include "platform/forms/icones.h"

#include "core/literais.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace {

// "currentColor" in the drawing stands for the palette's text colour.
class MotorSvg : public QIconEngine {
public:
    MotorSvg(QByteArray svg, icones::Uso uso) : m_svg(std::move(svg)), m_uso(uso) {}

    void paint(QPainter *pintor, const QRect &area, QIcon::Mode modo, QIcon::State) override {
        const auto grupo = modo == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const bool realce = modo == QIcon::Selected || (modo == QIcon::Active && m_uso == icones::Uso::Menu);
        const auto papel = realce ? QPalette::HighlightedText : QPalette::WindowText;
        QByteArray pintado = m_svg;
        pintado.replace("currentColor", QGuiApplication::palette().color(grupo, papel).name().toLatin1());
        QSvgRenderer(pintado).render(pintor, QRectF(area));
    }
    QPixmap pixmap(const QSize &tamanho, QIcon::Mode modo, QIcon::State estadoIcone) override {
        QPixmap imagem(tamanho);
        imagem.fill(Qt::transparent);
        QPainter pintor(&imagem);
        paint(&pintor, QRect(QPoint(), tamanho), modo, estadoIcone);
        return imagem;
    }
    QIconEngine *clone() const override { return new MotorSvg(m_svg, m_uso); }

private:
    QByteArray m_svg;
    icones::Uso m_uso;
};

} // namespace

QIcon icones::icone(const QString &nome, Uso uso) {
    QFile ficheiro(u":/icones/"_s + nome + u".svg");
    if (nome.isEmpty() || !ficheiro.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new MotorSvg(ficheiro.readAll(), uso));
}
