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
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Elegir PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a convertir.</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Añadir archivos</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>Arrastrar para ordenar</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>Archivos PDF (*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>Elegir PDF</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>Añadir archivos</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>Borrar todo</translation>
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
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>Imágenes a PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>Vertical</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>Horizontal</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>Tamaño de página</translation>
    </message>
    <message>
        <source>A4</source>
        <translation>A4</translation>
    </message>
    <message>
        <source>Letter(US)</source>
        <translation>Carta (EE. UU.)</translation>
    </message>
    <message>
        <source>页边距选项</source>
        <translation>Márgenes</translation>
    </message>
    <message>
        <source>无</source>
        <translation>Ninguno</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>Estrecho</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>Ancho</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>Orientación de la página</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>Más opciones</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>Convertir en un solo PDF</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>Si no, cada imagen será un PDF aparte</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>Añada imágenes o arrástrelas aquí para convertirlas.</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>Archivos de imagen (*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Elegir imágenes</translation>
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
    <message>
        <source>任务仍在进行</source>
        <translation>Hay tareas en curso</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>Al cerrar el programa se detienen las tareas sin terminar.</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>Detener y cerrar</translation>
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
    <name>OfficeToPdfOptionsPanel</name>
    <message>
        <source>Office转为PDF</source>
        <translation>Office a PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>Convertir archivos de Word, PowerPoint y Excel en PDF</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>Añada archivos o arrástrelos aquí para convertirlos.</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>Aún no disponible</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>Esta versión aún no puede convertir archivos de Office.</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>Carpeta original</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>Escritorio</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>Carpeta Quillora</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>Elegir ubicación…</translation>
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
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>Comprimir PDF</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>Comprimir</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>Básica</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>Tamaño medio, mejor calidad</translation>
    </message>
    <message>
        <source>强</source>
        <translation>Alta</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>Tamaño mínimo, menor calidad</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>Nivel de compresión</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Opciones de guardado</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a comprimir.</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>PDF a imágenes</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>Formato de imagen</translation>
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
        <translation>Más opciones</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>Extraer imágenes individuales</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>Cada imagen del PDF se guarda por separado</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>Desbloquear PDF</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>Desbloquear</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Opciones de guardado</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Campo obligatorio</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a desbloquear.</translation>
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
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>Añadir contraseña</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>Repetir contraseña</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>Opciones de guardado</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>Campo obligatorio</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Las contraseñas deben coincidir</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>Cifrar PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a cifrar.</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>Las contraseñas deben coincidir</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>Si continúa, los archivos se cifrarán con la primera contraseña.</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>Continuar</translation>
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
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>Combinar PDF</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>Combinar</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Insertar</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>En blanco</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>Antes de combinar puede insertar páginas en blanco entre los archivos</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a combinar.</translation>
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
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>PDF a Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>Convertir</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>Formato de archivo</translation>
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
        <translation>Añada archivos PDF o arrástrelos aquí desde el escritorio para empezar a convertir.</translation>
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
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>Reemplazar archivo original</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>Conservar archivo original</translation>
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
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>Abrir archivo</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>Abrir carpeta</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>Procesando…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>En pausa</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>Completado</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>Cancelado</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>Reiniciar</translation>
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
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>Ubicación de guardado</translation>
    </message>
</context>
</TS>
