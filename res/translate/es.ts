<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>Cerrar</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>Imprimir el PDF</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>No se pudo imprimir</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>No se pudo iniciar el trabajo de impresión.</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>La impresión no se completó</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>Ubicación de guardado</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>Carpeta de origen</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>Documentos</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>Elegir otra carpeta…</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>Elegir dónde guardar los archivos</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>Carpeta personalizada</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>Herramientas</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>Archivos recientes</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>Abra un archivo PDF o elija una herramienta para empezar.</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>Abrir archivo PDF</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>Aún no hay archivos recientes</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>Los archivos PDF que abra aparecerán aquí</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>图像转PDF</source>
        <translation>Imágenes a PDF</translation>
    </message>
    <message>
        <source>将图像合成为 PDF 文件。</source>
        <translation>Cree archivos PDF a partir de imágenes.</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>Chino simplificado</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>Inglés</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>Alemán</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>Francés</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>Español</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>Árabe</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>Japonés</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>Aplicar</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>Configuración de idioma</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>Elija el idioma de la interfaz de Quillora</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>¿Cambiar de idioma?</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>El idioma de la interfaz cambiará a «%1».</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>Se cerrarán las pestañas de herramientas abiertas.</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>Cambiar</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>No se puede cambiar de idioma</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>No se pudo cargar el archivo de traducción del idioma elegido.</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>Inicio</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>Comprimir PDF</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>Office a PDF</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>Imágenes a PDF</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>Descifrar PDF</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>Combinar PDF</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>Elegir ubicación…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>Elegir carpeta</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>Aceptar</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>Office转为PDF</source>
        <translation>Office a PDF</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Convierta archivos de Word, PowerPoint y Excel a PDF</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>No se puede mostrar esta página</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>Alejar</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>Acercar</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>Generando vista previa…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>Insertar páginas aquí</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>No dividir aquí</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>Dividir aquí</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>Anular la selección de la página</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>Seleccionar la página</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Ver la página</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Duplicar la página</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Girar la página a la derecha</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Eliminar la página</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>La impresora no puede crear una página nueva.</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>No se pudo representar la página %1.</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>Ocultar contraseña</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>Mostrar contraseña</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>Contraseña incorrecta. Vuelva a introducir la contraseña del PDF:</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>Se requiere contraseña</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>El archivo no existe o se ha movido.</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>El PDF requiere una contraseña.</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>La contraseña del PDF es incorrecta.</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>El PDF está dañado o su formato no es compatible.</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>No se pudo mostrar la página.</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>No se pudo escribir el archivo de destino. Compruebe los permisos y el espacio en disco.</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>La operación no se completó.</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>Ajustar a la altura</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>Ajustar al ancho</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>Página anterior</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>Página siguiente</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>压缩PDF</source>
        <translation>Comprimir PDF</translation>
    </message>
    <message>
        <source>减小 PDF 文件的体积，便于发送和保存。</source>
        <translation>Reduzca el tamaño de los archivos PDF para enviarlos y guardarlos fácilmente.</translation>
    </message>
</context>
<context>
    <name>PdfConvertPage</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>将 PDF 的每一页保存为图像。</source>
        <translation>Guarde cada página de un PDF como imagen.</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>解锁PDF</source>
        <translation>Desbloquear PDF</translation>
    </message>
    <message>
        <source>移除 PDF 文件的密码。</source>
        <translation>Quite la contraseña de los archivos PDF.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>Mostrando la página %1…</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>No se puede mostrar esta página</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>用密码保护 PDF 文件。</source>
        <translation>Proteja archivos PDF con una contraseña.</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>Este PDF está cifrado. Introduzca la contraseña:</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>No se puede abrir el PDF</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>Guardar los cambios</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>El PDF actual se ha modificado. ¿Desea guardarlo?</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>No guardar</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>Sin título.pdf</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>Guardar el PDF como</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>No se pudo guardar el PDF</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>Insertar PDF
o soltar varios PDF aquí</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>合并PDF</source>
        <translation>Combinar PDF</translation>
    </message>
    <message>
        <source>将多个 PDF 文件合并为一个。</source>
        <translation>Combine varios archivos PDF en uno.</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>Extraer las páginas seleccionadas en un solo archivo</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>Dividir cada página en su propio archivo</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extraer</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Dividir</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>Opciones de extracción</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>Guardar las páginas seleccionadas como</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>Opciones de división</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>Vista previa del resultado</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>Ubicación de los archivos</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>Seleccione primero las páginas que desea extraer</translation>
    </message>
    <message>
        <source>%1-extracted.pdf
页面 %2</source>
        <translation>%1-extracted.pdf
Páginas %2</translation>
    </message>
    <message>
        <source>%1-%2.pdf
第 %2 页</source>
        <translation>%1-%2.pdf
Página %2</translation>
    </message>
    <message>
        <source>点击页面之间的虚线，可以自定义拆分文件。</source>
        <translation>Haga clic en las líneas discontinuas entre las páginas para elegir dónde dividir.</translation>
    </message>
    <message>
        <source>%1-%2.pdf
页面 %3-%4</source>
        <translation>%1-%2.pdf
Páginas %3-%4</translation>
    </message>
</context>
<context>
    <name>PdfPageCommands</name>
    <message>
        <source>插入的 PDF 已加密，请输入密码：</source>
        <translation>El PDF que desea insertar está cifrado. Introduzca su contraseña:</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>No se pudo insertar el PDF</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>Insertar PDF</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>Insertar una página en blanco después</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>No se pudo extraer</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>No se pudieron extraer algunas páginas</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>Extracción completada</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>No se pudo dividir</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>No se pudieron separar algunos archivos</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>División completada</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>No se pudo crear la carpeta de destino.</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>Archivos creados: %1; fallidos: %2.

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>Archivos PDF creados: %1.
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficePage</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>将 PDF 转换为可编辑的 Office 文档。</source>
        <translation>Convierta archivos PDF en documentos de Office editables.</translation>
    </message>
</context>
<context>
    <name>PdfTopToolBar</name>
    <message>
        <source>文档</source>
        <translation>Documento</translation>
    </message>
    <message>
        <source>文档阅读视图</source>
        <translation>Vista de lectura</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>Páginas</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>Vista de gestión de páginas</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>Mostrar u ocultar las miniaturas</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>Herramientas</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>Herramientas PDF</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insertar</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>Insertar un PDF o una página en blanco</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>Extraer</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>Extraer las páginas seleccionadas</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>Dividir</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>Dividir el PDF</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>Girar a la izquierda</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>Girar a la derecha</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>Eliminar las páginas seleccionadas</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Seleccionar todo</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>Seleccionar todas las páginas</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>Deshacer</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Rehacer</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>Más</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>Herramienta mano</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Comprimir</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>Desbloquear PDF</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>Números de página</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>Guardar archivo</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>Guardar archivo como…</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>Imprimir</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>Mostrar en la carpeta</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>Insertar PDF</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>Insertar página en blanco</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>Duplicar páginas</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Eliminar páginas</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>Girar páginas a la izquierda</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Girar páginas a la derecha</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>Mover página</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>Guardando el PDF</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>Escribiendo el archivo. Los archivos grandes pueden tardar un poco.</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>No cierre el programa hasta que termine de guardarse.</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>No se encuentra el archivo o no se puede abrir.</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>Se necesita una contraseña.</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>La contraseña es incorrecta.</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>El archivo está dañado o no es compatible.</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>No se pudo representar una página.</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>No se pudo escribir el resultado.</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>La imagen está dañada o no es compatible.</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>Generando miniatura…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>Ver la página</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>Girar la página a la derecha</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>Eliminar la página</translation>
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
        <translation>Configuración de idioma</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimizar</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>Cerrar</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>Restaurar</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>Maximizar</translation>
    </message>
</context>
</TS>
