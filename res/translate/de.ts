<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>PDF drucken</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>Drucken fehlgeschlagen</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>Der Druckauftrag konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>Drucken nicht abgeschlossen</translation>
    </message>
</context>
<context>
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>PDF auswählen</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie umzuwandeln.</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Dateien hinzufügen</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>Zum Sortieren ziehen</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>PDF auswählen</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Dateien hinzufügen</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>Alle entfernen</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>Quellordner</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Desktop</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Dokumente</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>Anderen Ordner wählen …</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>Speicherort wählen</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>Eigener Ordner</translation>
    </message>
</context>
<context>
    <name>FileSize</name>
    <message>
        <source>%1 B</source>
        <translation>%1 B</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>Zuletzt verwendet</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>Öffnen Sie eine PDF-Datei oder wählen Sie unten ein Werkzeug.</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>PDF-Datei öffnen</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>Noch keine zuletzt verwendeten Dateien</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>Geöffnete PDF-Dateien erscheinen hier</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>Bilder in PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Umwandeln</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>Hochformat</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>Querformat</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>Seitengröße</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Letter(US)</source>
        <translation>Letter (US)</translation>
    </message>
    <message>
        <source>页边距选项</source>
        <translation>Seitenränder</translation>
    </message>
    <message>
        <source>无</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>Schmal</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>Breit</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>Seitenausrichtung</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>Weitere Optionen</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>In eine PDF-Datei zusammenfassen</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>Sonst wird jedes Bild eine eigene PDF-Datei</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>Bilder hinzufügen oder hierher ziehen, um sie umzuwandeln.</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>Bilddateien (*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Bilder auswählen</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>Chinesisch (vereinfacht)</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>Englisch</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>Französisch</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Spanisch</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Arabisch</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japanisch</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Spracheinstellungen</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Wählen Sie die Sprache der Oberfläche von Quillora</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>Sprache wechseln?</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>Die Sprache der Oberfläche wird auf „%1“ umgestellt.</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>Die derzeit geöffneten Werkzeug-Tabs werden geschlossen.</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>Wechseln</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>Sprache kann nicht gewechselt werden</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>Die Übersetzungsdatei der gewählten Sprache konnte nicht geladen werden.</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>PDF komprimieren</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF in Office</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office in PDF</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>Bilder in PDF</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF in Bilder</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>PDF entschlüsseln</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>PDF verschlüsseln</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>PDF zusammenfügen</translation>
    </message>
    <message>
        <source>任务仍在进行</source>
        <translation>Aufgaben laufen noch</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>Wenn Sie das Programm schließen, werden unfertige Aufgaben abgebrochen.</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>Abbrechen und schließen</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>Ort wählen…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>Ordner wählen</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfOptionsPanel</name>
    <message>
        <source>Office转为PDF</source>
        <translation>Office in PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Umwandeln</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Word-, PowerPoint- und Excel-Dateien in PDF umwandeln</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>Dateien hinzufügen oder hierher ziehen, um sie umzuwandeln.</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>Noch nicht unterstützt</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>Diese Version kann Office-Dateien noch nicht umwandeln.</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>Originalordner</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Schreibtisch</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>Quillora-Ordner</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>Ort wählen…</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>Diese Seite kann nicht angezeigt werden</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>Verkleinern</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Vergrößern</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>Vorschau wird erstellt…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>Seiten hier einfügen</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>Hier nicht teilen</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>Hier teilen</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>Auswahl der Seite aufheben</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>Seite auswählen</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Seite anzeigen</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Seite duplizieren</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Seite nach rechts drehen</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Seite löschen</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>Der Drucker kann keine neue Seite anlegen.</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>Seite %1 konnte nicht gerendert werden.</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>Kennwort ausblenden</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>Kennwort anzeigen</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>Falsches Kennwort. Geben Sie das PDF-Kennwort erneut ein:</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>Kennwort erforderlich</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>Die Datei ist nicht vorhanden oder wurde verschoben.</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>Die PDF-Datei erfordert ein Kennwort.</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>Das PDF-Kennwort ist falsch.</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>Die PDF-Datei ist beschädigt oder ihr Format wird nicht unterstützt.</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>Die Seite konnte nicht dargestellt werden.</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>Die Zieldatei konnte nicht geschrieben werden. Prüfen Sie die Berechtigungen und den Speicherplatz.</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>Der Vorgang wurde nicht abgeschlossen.</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>An Höhe anpassen</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>An Breite anpassen</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>Vorherige Seite</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>Nächste Seite</translation>
    </message>
</context>
<context>
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>PDF komprimieren</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Komprimieren</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>Standard</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>Mittlere Größe, beste Qualität</translation>
    </message>
    <message>
        <source>强</source>
        <translation>Stark</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>Kleinste Datei, geringere Qualität</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>Komprimierungsgrad</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Speicheroptionen</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie zu komprimieren.</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF in Bilder</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Umwandeln</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>Bildformat</translation>
    </message>
    <message>
        <source>JPG</source>
        <translation>JPG</translation>
    </message>
    <message>
        <source>PNG</source>
        <translation>PNG</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>Weitere Optionen</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>Einzelne Bilder extrahieren</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>Jedes Bild der PDF-Datei wird einzeln gespeichert</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>PDF entsperren</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>Entsperren</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Speicheroptionen</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Pflichtfeld</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie zu entsperren.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>Seite %1 wird dargestellt…</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>Diese Seite kann nicht angezeigt werden</translation>
    </message>
</context>
<context>
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>PDF verschlüsseln</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>Kennwort hinzufügen</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Kennwort</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>Kennwort wiederholen</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Speicheroptionen</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Pflichtfeld</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Die Kennwörter müssen übereinstimmen</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>PDF verschlüsseln</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie zu verschlüsseln.</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Die Kennwörter müssen übereinstimmen</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>Wenn Sie fortfahren, werden die Dateien mit dem ersten Kennwort verschlüsselt.</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>Fortfahren</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>Diese PDF-Datei ist verschlüsselt. Geben Sie das Kennwort ein:</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>PDF kann nicht geöffnet werden</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>Änderungen speichern</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>Die aktuelle PDF-Datei wurde geändert. Möchten Sie sie speichern?</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>Nicht speichern</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>Unbenannt.pdf</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>PDF speichern unter</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>Die PDF-Datei konnte nicht gespeichert werden</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>PDF einfügen
oder mehrere PDFs hier ablegen</translation>
    </message>
</context>
<context>
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>PDF zusammenfügen</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>Zusammenfügen</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>Vor dem Zusammenfügen können Sie leere Seiten zwischen Dateien einfügen</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie zusammenzufügen.</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>Ausgewählte Seiten in eine einzige Datei extrahieren</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>Jede Seite in eine eigene Datei teilen</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extrahieren</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>Optionen zum Extrahieren</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>Ausgewählte Seiten speichern als</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>Optionen zum Teilen</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>Vorschau der Ausgabe</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>Speicherort</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>Wählen Sie zuerst die zu extrahierenden Seiten aus</translation>
    </message>
    <message>
        <source>%1-extracted.pdf
页面 %2</source>
        <translation>%1-extracted.pdf
Seiten %2</translation>
    </message>
    <message>
        <source>%1-%2.pdf
第 %2 页</source>
        <translation>%1-%2.pdf
Seite %2</translation>
    </message>
    <message>
        <source>点击页面之间的虚线，可以自定义拆分文件。</source>
        <translation>Klicken Sie auf die gestrichelten Linien zwischen den Seiten, um festzulegen, wo geteilt wird.</translation>
    </message>
    <message>
        <source>%1-%2.pdf
页面 %3-%4</source>
        <translation>%1-%2.pdf
Seiten %3-%4</translation>
    </message>
</context>
<context>
    <name>PdfPageCommands</name>
    <message>
        <source>插入的 PDF 已加密，请输入密码：</source>
        <translation>Die einzufügende PDF-Datei ist verschlüsselt. Geben Sie ihr Kennwort ein:</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>Die PDF-Datei konnte nicht eingefügt werden</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>PDF einfügen</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>PDF-Dateien (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>Leere Seite dahinter einfügen</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>Extrahieren fehlgeschlagen</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>Einige Seiten konnten nicht extrahiert werden</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>Extrahieren abgeschlossen</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>Teilen fehlgeschlagen</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>Einige Dateien konnten nicht abgeteilt werden</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>Teilen abgeschlossen</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>Der Zielordner konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>Erstellte Dateien: %1, fehlgeschlagen: %2.

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>Erstellte PDF-Dateien: %1.
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF in Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Umwandeln</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>Dateiformat</translation>
    </message>
    <message>
        <source>Word (*.docx)</source>
        <translation>Word (*.docx)</translation>
    </message>
    <message>
        <source>Excel (*.xlsx)</source>
        <translation>Excel (*.xlsx)</translation>
    </message>
    <message>
        <source>PowerPoint (*.pptx)</source>
        <translation>PowerPoint (*.pptx)</translation>
    </message>
</context>
<context>
    <name>PdfToOfficePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>PDF-Dateien hinzufügen oder vom Schreibtisch hierher ziehen, um sie umzuwandeln.</translation>
    </message>
</context>
<context>
    <name>PdfTopToolBar</name>
    <message>
        <source>文档</source>
        <translation>Dokument</translation>
    </message>
    <message>
        <source>文档阅读视图</source>
        <translation>Leseansicht</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>Seitenverwaltung</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>Miniaturen ein- oder ausblenden</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>PDF-Werkzeuge</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>PDF oder leere Seite einfügen</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extrahieren</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>Ausgewählte Seiten extrahieren</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Teilen</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>PDF teilen</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>Nach links drehen</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>Nach rechts drehen</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>Ausgewählte Seiten löschen</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>Alle Seiten auswählen</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>Handwerkzeug</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Komprimieren</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>PDF in Office</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF in Bilder</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>PDF verschlüsseln</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>PDF entsperren</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>Seitenzahlen</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>Datei speichern</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>Datei speichern unter…</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>Drucken</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>Im Ordner anzeigen</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>PDF einfügen</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>Leere Seite einfügen</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Seiten duplizieren</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Seiten löschen</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>Seiten nach links drehen</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Seiten nach rechts drehen</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>Seite verschieben</translation>
    </message>
</context>
<context>
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>Originaldatei ersetzen</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>Originaldatei behalten</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>PDF wird gespeichert</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>Die Datei wird geschrieben. Bei großen Dateien kann das etwas dauern.</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>Schließen Sie das Programm nicht, bevor das Speichern abgeschlossen ist.</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>Die Datei wurde nicht gefunden oder kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>Ein Kennwort ist erforderlich.</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>Das Kennwort ist falsch.</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>Die Datei ist beschädigt oder wird nicht unterstützt.</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>Eine Seite konnte nicht dargestellt werden.</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>Das Ergebnis konnte nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>Das Bild ist beschädigt oder wird nicht unterstützt.</translation>
    </message>
</context>
<context>
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>Ordner öffnen</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>Wird verarbeitet…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Fehlgeschlagen</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Abgebrochen</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>Von vorn</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>Miniatur wird erstellt…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Seite anzeigen</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Seite nach rechts drehen</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Seite löschen</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Quillora</source>
        <translation>Quillora</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Spracheinstellungen</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimieren</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Maximieren</translation>
    </message>
</context>
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>Speicherort</translation>
    </message>
</context>
</TS>
