#include "views/forms/saidaGrafico.h"

#include "core/estado.h"
#include "core/exportado.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/modMain.h"
#include "platform/chart/TChart.h"
#include "platform/report/JanelaRelatorio.h"
#include "views/forms/desenhosDeRelatorios.h"
#include "views/impressao.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>

namespace {

constexpr int larguraDaImagem = 1050;
constexpr int alturaDaImagem = 506;
constexpr int qualidadeJPEG = 92;

// The working file is written anew each time and left behind. The printed picture is the one that was written; where
// the program's folder cannot be written to, it is taken as drawn.
QImage imagemDeTrabalho(const TChart &grafico) {
    const QImage imagem = grafico.imagem(larguraDaImagem, alturaDaImagem);
    const QString caminho = estado().PastaPrograma + u"/Teste.cap";
    QImage escrita;
    if (imagem.save(caminho, "PNG") && escrita.load(caminho, "PNG"))
        return escrita;
    return imagem;
}

} // namespace

namespace saidaGrafico {

void imprimir(const TChart &grafico, const Pagina &pagina, QWidget *dono) {
    std::unique_ptr<DataReport> relatorio = criarRelatorio(pagina.relatorio);
    relatorio->rotulo(u"Section4"_s, u"lblTitulo"_s, pagina.titulo);
    relatorio->rotulo(u"Section4"_s, u"lblDescricao"_s, pagina.descricao);
    if (!pagina.media.isEmpty())
        relatorio->rotulo(u"Section4"_s, u"lblMedia"_s, pagina.media);
    relatorio->rotulo(u"Section4"_s, u"lblAlarmes"_s, pagina.alarmes);
    relatorio->rotulo(u"Section4"_s, u"lblSensores"_s, pagina.sensores);
    relatorio->rotulo(u"Section5"_s, u"lblDataHora2"_s, impressao::dataHora());
    if (ControloDeRelatorio *imagem = relatorio->Sections(u"Section2"_s)->controlo(u"imgChart"_s))
        imagem->picture = imagemDeTrabalho(grafico);
    auto *janela = new JanelaRelatorio(std::move(relatorio), pagina.titulo, dono);
    janela->setPasta([] { return modMain::CriarCaminhoJPG(); });
    janela->mostrar();
}

void exportarJPG(const TChart &grafico, const QString &base) {
    Dialogos *dialogos = estado().ambiente.dialogos;
    const QString proposto = modMain::CriarCaminhoJPG(base);
    const QString caminho =
        dialogos ? dialogos->gravarFicheiro(proposto, QFileInfo(proposto).path(), u"Jpg (*.jpg)|*.jpg"_s) : QString();
    if (caminho.isEmpty())
        return;
    QByteArray bytes;
    QBuffer memoria(&bytes);
    QImageWriter escritor(&memoria, "JPG");
    escritor.setQuality(qualidadeJPEG);
    const bool pronta = escritor.write(grafico.imagem(larguraDaImagem, alturaDaImagem));
    FicheiroInteiro ficheiro(caminho); // a whole picture, or what stood there before
    if (!pronta || !ficheiro.abrir() || ficheiro.write(bytes) != bytes.size() || !ficheiro.concluir())
        throw Falha(
            erros::falhaDoFicheiro,
            modTraducoes::texto(u"KelvarkAUX"_s, u"FicheiroNaoEscrito"_s,
                                u"Não é possível escrever \"%1\": %2. O ficheiro que lá estivesse ficou como estava."_s)
                .arg(caminho, pronta ? ficheiro.errorString() : escritor.errorString()));
    anunciarExportado(caminho);
}

} // namespace saidaGrafico
