<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar_SA" sourcelanguage="zh_CN">
<context>
    <name>CustomTabBar</name>
    <message>
        <source>关闭</source>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>DocumentPrinting</name>
    <message>
        <source>打印 PDF</source>
        <translation>‫طباعة PDF‬</translation>
    </message>
    <message>
        <source>打印失败</source>
        <translation>تعذرت الطباعة</translation>
    </message>
    <message>
        <source>无法启动打印任务。</source>
        <translation>‫تعذر بدء مهمة الطباعة.‬</translation>
    </message>
    <message>
        <source>打印未完成</source>
        <translation>لم تكتمل الطباعة</translation>
    </message>
</context>
<context>
    <name>FileDropZoneWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>ملفات PDF ‏(*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>اختيار ملف PDF</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء التحويل.</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>إضافة ملفات</translation>
    </message>
</context>
<context>
    <name>FileListItem</name>
    <message>
        <source>拖动排序</source>
        <translation>اسحب لإعادة الترتيب</translation>
    </message>
</context>
<context>
    <name>FileListWidget</name>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>ملفات PDF ‏(*.pdf)</translation>
    </message>
    <message>
        <source>选择 PDF</source>
        <translation>اختيار ملف PDF</translation>
    </message>
    <message>
        <source>添加文件</source>
        <translation>إضافة ملفات</translation>
    </message>
    <message>
        <source>清除全部</source>
        <translation>مسح الكل</translation>
    </message>
</context>
<context>
    <name>FileLocationSelector</name>
    <message>
        <source>文件保存位置</source>
        <translation>موقع حفظ الملفات</translation>
    </message>
    <message>
        <source>原始文件夹</source>
        <translation>مجلد المصدر</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>سطح المكتب</translation>
    </message>
    <message>
        <source>文档</source>
        <translation>المستندات</translation>
    </message>
    <message>
        <source>选择其他文件夹…</source>
        <translation>‫اختيار مجلد آخر…‬</translation>
    </message>
    <message>
        <source>选择文件保存位置</source>
        <translation>اختيار موقع حفظ الملفات</translation>
    </message>
    <message>
        <source>自定义文件夹</source>
        <translation>مجلد مخصص</translation>
    </message>
</context>
<context>
    <name>FileSize</name>
    <message>
        <source>%1 B</source>
        <translation>%1 ب</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 كب</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 مب</translation>
    </message>
    <message>
        <source>%1 GB</source>
        <translation>%1 غب</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>工具</source>
        <translation>الأدوات</translation>
    </message>
    <message>
        <source>最近文件</source>
        <translation>الملفات الأخيرة</translation>
    </message>
    <message>
        <source>打开一个 PDF 文件，或选择下方的工具开始。</source>
        <translation>‫افتح ملف PDF أو اختر إحدى الأدوات أدناه للبدء.‬</translation>
    </message>
    <message>
        <source>打开 PDF 文件</source>
        <translation>‫فتح ملف PDF‬</translation>
    </message>
    <message>
        <source>暂无最近文件</source>
        <translation>لا توجد ملفات حديثة بعد</translation>
    </message>
    <message>
        <source>打开的 PDF 文件会显示在这里</source>
        <translation>‫ستظهر هنا ملفات PDF التي تفتحها‬</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>‫ملفات PDF‬ (*.pdf)</translation>
    </message>
</context>
<context>
    <name>ImageToPdfOptionsPanel</name>
    <message>
        <source>图像转PDF</source>
        <translation>صور إلى PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>تحويل</translation>
    </message>
    <message>
        <source>纵向</source>
        <translation>عمودي</translation>
    </message>
    <message>
        <source>横向</source>
        <translation>أفقي</translation>
    </message>
    <message>
        <source>页面大小</source>
        <translation>حجم الصفحة</translation>
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
        <translation>الهوامش</translation>
    </message>
    <message>
        <source>无</source>
        <translation>بلا</translation>
    </message>
    <message>
        <source>窄</source>
        <translation>ضيق</translation>
    </message>
    <message>
        <source>宽</source>
        <translation>واسع</translation>
    </message>
    <message>
        <source>页面方向</source>
        <translation>اتجاه الصفحة</translation>
    </message>
    <message>
        <source>更多选项</source>
        <translation>خيارات أخرى</translation>
    </message>
    <message>
        <source>转换为单个PDF</source>
        <translation>تحويل إلى ملف PDF واحد</translation>
    </message>
    <message>
        <source>每张图像都将保存为单个PDF</source>
        <translation>وإلا تُحفظ كل صورة في ملف PDF منفصل</translation>
    </message>
</context>
<context>
    <name>ImageToPdfPage</name>
    <message>
        <source>添加或拖拽图像文件进行转换。</source>
        <translation>أضف صورًا أو أفلتها هنا لتحويلها.</translation>
    </message>
    <message>
        <source>图像文件 (*.jpg *.jpeg *.png)</source>
        <translation>ملفات الصور ‏(*.jpg *.jpeg *.png)</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>اختيار صور</translation>
    </message>
</context>
<context>
    <name>LanguageDialog</name>
    <message>
        <source>简体中文</source>
        <translation>الصينية المبسطة</translation>
    </message>
    <message>
        <source>英语</source>
        <translation>الإنجليزية</translation>
    </message>
    <message>
        <source>德语</source>
        <translation>الألمانية</translation>
    </message>
    <message>
        <source>法语</source>
        <translation>الفرنسية</translation>
    </message>
    <message>
        <source>西班牙语</source>
        <translation>الإسبانية</translation>
    </message>
    <message>
        <source>阿拉伯语</source>
        <translation>العربية</translation>
    </message>
    <message>
        <source>日语</source>
        <translation>اليابانية</translation>
    </message>
    <message>
        <source>应用</source>
        <translation>تطبيق</translation>
    </message>
    <message>
        <source>语言设置</source>
        <translation>إعدادات اللغة</translation>
    </message>
    <message>
        <source>选择 Quillora 的界面语言</source>
        <translation>‫اختر لغة واجهة Quillora‬</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>切换语言？</source>
        <translation>‫هل تريد تبديل اللغة؟‬</translation>
    </message>
    <message>
        <source>界面语言将切换为“%1”。</source>
        <translation>‫ستُبدَّل لغة الواجهة إلى «%1».‬</translation>
    </message>
    <message>
        <source>当前打开的工具标签页将关闭。</source>
        <translation>‫ستُغلق علامات تبويب الأدوات المفتوحة حاليًا.‬</translation>
    </message>
    <message>
        <source>切换</source>
        <translation>تبديل</translation>
    </message>
    <message>
        <source>无法切换语言</source>
        <translation>يتعذر تبديل اللغة</translation>
    </message>
    <message>
        <source>未能加载所选语言的翻译文件。</source>
        <translation>‫تعذر تحميل ملف الترجمة للغة المحددة.‬</translation>
    </message>
</context>
<context>
    <name>MainPage</name>
    <message>
        <source>首页</source>
        <translation>الرئيسية</translation>
    </message>
    <message>
        <source>压缩PDF</source>
        <translation>‫ضغط PDF‬</translation>
    </message>
    <message>
        <source>PDF转为Office</source>
        <translation>‫PDF إلى Office‬</translation>
    </message>
    <message>
        <source>Office转为PDF</source>
        <translation>‫Office إلى PDF‬</translation>
    </message>
    <message>
        <source>图像转PDF</source>
        <translation>‫الصور إلى PDF‬</translation>
    </message>
    <message>
        <source>PDF转为图像</source>
        <translation>‫PDF إلى صور‬</translation>
    </message>
    <message>
        <source>PDF解密</source>
        <translation>‫فك تشفير PDF‬</translation>
    </message>
    <message>
        <source>PDF加密</source>
        <translation>‫تشفير PDF‬</translation>
    </message>
    <message>
        <source>合并PDF</source>
        <translation>‫دمج PDF‬</translation>
    </message>
    <message>
        <source>任务仍在进行</source>
        <translation>لا تزال هناك مهام قيد التنفيذ</translation>
    </message>
    <message>
        <source>关闭程序将停止尚未完成的任务。</source>
        <translation>يؤدي إغلاق البرنامج إلى إيقاف المهام غير المكتملة.</translation>
    </message>
    <message>
        <source>停止并关闭</source>
        <translation>إيقاف وإغلاق</translation>
    </message>
</context>
<context>
    <name>ModernComboBox</name>
    <message>
        <source>选择位置...</source>
        <translation>اختيار موقع…</translation>
    </message>
    <message>
        <source>选择文件夹</source>
        <translation>اختيار مجلد</translation>
    </message>
</context>
<context>
    <name>ModernMessageBox</name>
    <message>
        <source>取消</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>عدم الحفظ</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>موافق</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfOptionsPanel</name>
    <message>
        <source>Office转为PDF</source>
        <translation>‏Office إلى PDF</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>تحويل</translation>
    </message>
    <message>
        <source>将 Word、PowerPoint 和 Excel 文件转换为 PDF</source>
        <translation>تحويل ملفات Word وPowerPoint وExcel إلى PDF</translation>
    </message>
</context>
<context>
    <name>OfficeToPdfPage</name>
    <message>
        <source>添加或拖拽文件进行转换。</source>
        <translation>أضف ملفات أو أفلتها هنا لتحويلها.</translation>
    </message>
</context>
<context>
    <name>OfficeToolPage</name>
    <message>
        <source>暂不支持</source>
        <translation>غير مدعوم بعد</translation>
    </message>
    <message>
        <source>此版本尚不能转换 Office 文件。</source>
        <translation>لا يمكن لهذا الإصدار تحويل ملفات Office بعد.</translation>
    </message>
</context>
<context>
    <name>OutputLocation</name>
    <message>
        <source>原始文件</source>
        <translation>المجلد الأصلي</translation>
    </message>
    <message>
        <source>桌面</source>
        <translation>سطح المكتب</translation>
    </message>
    <message>
        <source>Quillora文件</source>
        <translation>مجلد Quillora</translation>
    </message>
    <message>
        <source>选择位置...</source>
        <translation>اختيار موقع…</translation>
    </message>
</context>
<context>
    <name>PageCardDelegate</name>
    <message>
        <source>无法显示此页面</source>
        <translation>يتعذر عرض هذه الصفحة</translation>
    </message>
</context>
<context>
    <name>PageGridZoomControl</name>
    <message>
        <source>缩小</source>
        <translation>تصغير</translation>
    </message>
    <message>
        <source>放大</source>
        <translation>تكبير</translation>
    </message>
</context>
<context>
    <name>PageManagerDelegate</name>
    <message>
        <source>正在生成预览…</source>
        <translation>جارٍ إنشاء المعاينة…</translation>
    </message>
    <message>
        <source>在此处插入页面</source>
        <translation>إدراج صفحات هنا</translation>
    </message>
    <message>
        <source>取消此处的拆分</source>
        <translation>إلغاء التقسيم هنا</translation>
    </message>
    <message>
        <source>在此处拆分</source>
        <translation>التقسيم هنا</translation>
    </message>
    <message>
        <source>取消选择页面</source>
        <translation>إلغاء تحديد الصفحة</translation>
    </message>
    <message>
        <source>选择页面</source>
        <translation>تحديد الصفحة</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>معاينة الصفحة</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>تكرار الصفحة</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>تدوير الصفحة إلى اليمين</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>حذف الصفحة</translation>
    </message>
</context>
<context>
    <name>PagePrinter</name>
    <message>
        <source>打印机无法创建新页面。</source>
        <translation>‫يتعذر على الطابعة إنشاء صفحة جديدة.‬</translation>
    </message>
    <message>
        <source>第 %1 页渲染失败。</source>
        <translation>‫تعذر عرض الصفحة %1.‬</translation>
    </message>
</context>
<context>
    <name>PasswordInput</name>
    <message>
        <source>隐藏密码</source>
        <translation>إخفاء كلمة المرور</translation>
    </message>
    <message>
        <source>显示密码</source>
        <translation>إظهار كلمة المرور</translation>
    </message>
</context>
<context>
    <name>PasswordQuestion</name>
    <message>
        <source>密码错误，请重新输入 PDF 密码：</source>
        <translation>‫كلمة المرور غير صحيحة. أعد إدخال كلمة مرور PDF:‬</translation>
    </message>
    <message>
        <source>需要密码</source>
        <translation>كلمة المرور مطلوبة</translation>
    </message>
    <message>
        <source>确定</source>
        <translation>موافق</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>إلغاء</translation>
    </message>
</context>
<context>
    <name>PdfBackendError</name>
    <message>
        <source>文件不存在或已被移动。</source>
        <translation>‫الملف غير موجود أو تم نقله.‬</translation>
    </message>
    <message>
        <source>PDF 需要密码。</source>
        <translation>‫يتطلب ملف PDF كلمة مرور.‬</translation>
    </message>
    <message>
        <source>PDF 密码错误。</source>
        <translation>‫كلمة مرور PDF غير صحيحة.‬</translation>
    </message>
    <message>
        <source>PDF 已损坏或格式不受支持。</source>
        <translation>‫ملف PDF تالف أو تنسيقه غير مدعوم.‬</translation>
    </message>
    <message>
        <source>页面渲染失败。</source>
        <translation>‫تعذر عرض الصفحة.‬</translation>
    </message>
    <message>
        <source>无法写入目标文件，请检查权限和磁盘空间。</source>
        <translation>‫تعذرت الكتابة إلى الملف الهدف. تحقق من الأذونات ومساحة القرص.‬</translation>
    </message>
    <message>
        <source>操作未完成。</source>
        <translation>‫لم تكتمل العملية.‬</translation>
    </message>
</context>
<context>
    <name>PdfBottomControlBar</name>
    <message>
        <source>切换为适合高度</source>
        <translation>التبديل إلى ملاءمة الارتفاع</translation>
    </message>
    <message>
        <source>切换为适合宽度</source>
        <translation>التبديل إلى ملاءمة العرض</translation>
    </message>
    <message>
        <source>上一页</source>
        <translation>الصفحة السابقة</translation>
    </message>
    <message>
        <source>下一页</source>
        <translation>الصفحة التالية</translation>
    </message>
</context>
<context>
    <name>PdfCompressOptionsPanel</name>
    <message>
        <source>压缩PDF</source>
        <translation>ضغط PDF</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>ضغط</translation>
    </message>
    <message>
        <source>基本</source>
        <translation>أساسي</translation>
    </message>
    <message>
        <source>文件尺寸适中，质量最</source>
        <translation>حجم متوسط وأفضل جودة</translation>
    </message>
    <message>
        <source>强</source>
        <translation>قوي</translation>
    </message>
    <message>
        <source>文件最小，质量</source>
        <translation>أصغر حجم وجودة أقل</translation>
    </message>
    <message>
        <source>选择压缩等级</source>
        <translation>مستوى الضغط</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>خيارات الحفظ</translation>
    </message>
</context>
<context>
    <name>PdfCompressPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始压缩。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء الضغط.</translation>
    </message>
</context>
<context>
    <name>PdfConvertOptionsPanel</name>
    <message>
        <source>PDF 转为图像</source>
        <translation>‏PDF إلى صور</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>تحويل</translation>
    </message>
    <message>
        <source>选择图像格式</source>
        <translation>تنسيق الصور</translation>
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
        <translation>خيارات أخرى</translation>
    </message>
    <message>
        <source>提取单个图像</source>
        <translation>استخراج الصور منفردة</translation>
    </message>
    <message>
        <source>PDF 中的每张图像都将保存为单张图像</source>
        <translation>تُحفظ كل صورة في ملف PDF على حدة</translation>
    </message>
</context>
<context>
    <name>PdfDecryOptionsPanel</name>
    <message>
        <source>解锁PDF</source>
        <translation>إلغاء قفل PDF</translation>
    </message>
    <message>
        <source>解锁</source>
        <translation>إلغاء القفل</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>كلمة المرور</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>خيارات الحفظ</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>هذا الحقل مطلوب</translation>
    </message>
</context>
<context>
    <name>PdfDecryPage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始解密。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء إلغاء القفل.</translation>
    </message>
</context>
<context>
    <name>PdfDocumentView</name>
    <message>
        <source>正在渲染第 %1 页…</source>
        <translation>‫جارٍ عرض الصفحة %1…‬</translation>
    </message>
    <message>
        <source>无法显示此页面</source>
        <translation>يتعذر عرض هذه الصفحة</translation>
    </message>
</context>
<context>
    <name>PdfEncryOptionsPanel</name>
    <message>
        <source>加密PDF</source>
        <translation>تشفير PDF</translation>
    </message>
    <message>
        <source>添加密码</source>
        <translation>إضافة كلمة مرور</translation>
    </message>
    <message>
        <source>密码</source>
        <translation>كلمة المرور</translation>
    </message>
    <message>
        <source>重新输入密码</source>
        <translation>إعادة إدخال كلمة المرور</translation>
    </message>
    <message>
        <source>保存选项</source>
        <translation>خيارات الحفظ</translation>
    </message>
    <message>
        <source>此项目为必填项</source>
        <translation>هذا الحقل مطلوب</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>يجب أن تتطابق كلمتا المرور</translation>
    </message>
</context>
<context>
    <name>PdfEncryPage</name>
    <message>
        <source>加密PDF</source>
        <translation>‫تشفير PDF‬</translation>
    </message>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始加密。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء التشفير.</translation>
    </message>
    <message>
        <source>两个密码应该匹配</source>
        <translation>يجب أن تتطابق كلمتا المرور</translation>
    </message>
    <message>
        <source>继续将使用第一个密码加密文件。</source>
        <translation>إذا تابعت، فستُشفَّر الملفات بكلمة المرور الأولى.</translation>
    </message>
    <message>
        <source>继续</source>
        <translation>متابعة</translation>
    </message>
</context>
<context>
    <name>PdfFileCommands</name>
    <message>
        <source>此 PDF 已加密，请输入密码：</source>
        <translation>‫ملف PDF هذا مشفر. أدخل كلمة المرور:‬</translation>
    </message>
    <message>
        <source>无法打开 PDF</source>
        <translation>‫يتعذر فتح PDF‬</translation>
    </message>
    <message>
        <source>保存修改</source>
        <translation>حفظ التغييرات</translation>
    </message>
    <message>
        <source>当前 PDF 已修改，是否保存？</source>
        <translation>‫تم تعديل ملف PDF الحالي. هل تريد حفظه؟‬</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>حفظ</translation>
    </message>
    <message>
        <source>不保存</source>
        <translation>عدم الحفظ</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>未命名.pdf</source>
        <translation>‫بدون عنوان.pdf‬</translation>
    </message>
    <message>
        <source>将 PDF 保存为</source>
        <translation>‫حفظ PDF باسم‬</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>‫ملفات PDF‬ (*.pdf)</translation>
    </message>
    <message>
        <source>保存 PDF 失败</source>
        <translation>‫تعذر حفظ PDF‬</translation>
    </message>
</context>
<context>
    <name>PdfInsertDropZone</name>
    <message>
        <source>插入 PDF
或将多个 PDF 拖放至此处</source>
        <translation>إدراج PDF
أو إفلات عدة ملفات PDF هنا</translation>
    </message>
</context>
<context>
    <name>PdfMergeOptionsPanel</name>
    <message>
        <source>合并PDF</source>
        <translation>دمج PDF</translation>
    </message>
    <message>
        <source>合并</source>
        <translation>دمج</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>إدراج</translation>
    </message>
    <message>
        <source>空白</source>
        <translation>فارغة</translation>
    </message>
    <message>
        <source>在合并之前，你可以在文件之间插入空白页</source>
        <translation>قبل الدمج يمكنك إدراج صفحات فارغة بين الملفات</translation>
    </message>
</context>
<context>
    <name>PdfMergePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始合并。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء الدمج.</translation>
    </message>
</context>
<context>
    <name>PdfOperationSidePanel</name>
    <message>
        <source>将选定页面提取为单个文件</source>
        <translation>استخراج الصفحات المحددة في ملف واحد</translation>
    </message>
    <message>
        <source>将每个页面拆分为单个文件</source>
        <translation>تقسيم كل صفحة إلى ملف مستقل</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>استخراج</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>تقسيم</translation>
    </message>
    <message>
        <source>文件提取选项</source>
        <translation>خيارات الاستخراج</translation>
    </message>
    <message>
        <source>将选定页面另存为</source>
        <translation>حفظ الصفحات المحددة باسم</translation>
    </message>
    <message>
        <source>文件拆分选项</source>
        <translation>خيارات التقسيم</translation>
    </message>
    <message>
        <source>输出预览</source>
        <translation>معاينة الملفات الناتجة</translation>
    </message>
    <message>
        <source>文件位置</source>
        <translation>موقع الملفات</translation>
    </message>
    <message>
        <source>请先选择要提取的页面</source>
        <translation>حدد أولًا الصفحات المراد استخراجها</translation>
    </message>
    <message>
        <source>%1-extracted.pdf
页面 %2</source>
        <translation>%1-extracted.pdf
الصفحات %2</translation>
    </message>
    <message>
        <source>%1-%2.pdf
第 %2 页</source>
        <translation>%1-%2.pdf
الصفحة %2</translation>
    </message>
    <message>
        <source>点击页面之间的虚线，可以自定义拆分文件。</source>
        <translation>‫انقر الخطوط المتقطعة بين الصفحات لاختيار مواضع التقسيم.‬</translation>
    </message>
    <message>
        <source>%1-%2.pdf
页面 %3-%4</source>
        <translation>%1-%2.pdf
الصفحات %3-%4</translation>
    </message>
</context>
<context>
    <name>PdfPageCommands</name>
    <message>
        <source>插入的 PDF 已加密，请输入密码：</source>
        <translation>‫ملف PDF المراد إدراجه مشفر. أدخل كلمة المرور:‬</translation>
    </message>
    <message>
        <source>插入 PDF 失败</source>
        <translation>‫تعذر إدراج PDF‬</translation>
    </message>
    <message>
        <source>插入 PDF</source>
        <translation>‫إدراج PDF‬</translation>
    </message>
    <message>
        <source>PDF 文件 (*.pdf)</source>
        <translation>‫ملفات PDF‬ (*.pdf)</translation>
    </message>
    <message>
        <source>在后面插入空白页</source>
        <translation>إدراج صفحة فارغة بعدها</translation>
    </message>
    <message>
        <source>提取失败</source>
        <translation>تعذر الاستخراج</translation>
    </message>
    <message>
        <source>部分页面提取失败</source>
        <translation>تعذر استخراج بعض الصفحات</translation>
    </message>
    <message>
        <source>提取完成</source>
        <translation>اكتمل الاستخراج</translation>
    </message>
    <message>
        <source>拆分失败</source>
        <translation>تعذر التقسيم</translation>
    </message>
    <message>
        <source>部分文件拆分失败</source>
        <translation>تعذر فصل بعض الملفات</translation>
    </message>
    <message>
        <source>拆分完成</source>
        <translation>اكتمل التقسيم</translation>
    </message>
    <message>
        <source>无法创建目标文件夹。</source>
        <translation>‫تعذر إنشاء مجلد الوجهة.‬</translation>
    </message>
    <message>
        <source>已生成 %1 个文件，%2 个文件失败。

%3</source>
        <translation>‫عدد الملفات التي أُنشئت: %1، وعدد التي فشلت: %2.‬

%3</translation>
    </message>
    <message>
        <source>已生成 %1 个 PDF 文件。
%2</source>
        <translation>‫عدد ملفات PDF التي أُنشئت: %1.‬
%2</translation>
    </message>
</context>
<context>
    <name>PdfToOfficeOptionsPanel</name>
    <message>
        <source>PDF转为Office</source>
        <translation>‏PDF إلى Office</translation>
    </message>
    <message>
        <source>转换</source>
        <translation>تحويل</translation>
    </message>
    <message>
        <source>选择文件格式</source>
        <translation>تنسيق الملف</translation>
    </message>
    <message>
        <source>Word (*.docx)</source>
        <translation>Word ‏(*.docx)</translation>
    </message>
    <message>
        <source>Excel (*.xlsx)</source>
        <translation>Excel ‏(*.xlsx)</translation>
    </message>
    <message>
        <source>PowerPoint (*.pptx)</source>
        <translation>PowerPoint ‏(*.pptx)</translation>
    </message>
</context>
<context>
    <name>PdfToOfficePage</name>
    <message>
        <source>从你的桌面上添加或拖放PDF文件，开始转换。</source>
        <translation>أضف ملفات PDF أو أفلتها هنا من سطح المكتب لبدء التحويل.</translation>
    </message>
</context>
<context>
    <name>PdfTopToolBar</name>
    <message>
        <source>文档</source>
        <translation>المستند</translation>
    </message>
    <message>
        <source>文档阅读视图</source>
        <translation>عرض قراءة المستند</translation>
    </message>
    <message>
        <source>页面</source>
        <translation>الصفحات</translation>
    </message>
    <message>
        <source>页面管理视图</source>
        <translation>عرض إدارة الصفحات</translation>
    </message>
    <message>
        <source>显示或隐藏缩略图</source>
        <translation>إظهار الصور المصغرة أو إخفاؤها</translation>
    </message>
    <message>
        <source>工具</source>
        <translation>الأدوات</translation>
    </message>
    <message>
        <source>PDF 工具</source>
        <translation>‫أدوات PDF‬</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>إدراج</translation>
    </message>
    <message>
        <source>插入 PDF 或空白页</source>
        <translation>‫إدراج ملف PDF أو صفحة فارغة‬</translation>
    </message>
    <message>
        <source>提取</source>
        <translation>استخراج</translation>
    </message>
    <message>
        <source>提取选定页面</source>
        <translation>استخراج الصفحات المحددة</translation>
    </message>
    <message>
        <source>拆分</source>
        <translation>تقسيم</translation>
    </message>
    <message>
        <source>拆分 PDF</source>
        <translation>‫تقسيم ملف PDF‬</translation>
    </message>
    <message>
        <source>向左旋转</source>
        <translation>تدوير إلى اليسار</translation>
    </message>
    <message>
        <source>向右旋转</source>
        <translation>تدوير إلى اليمين</translation>
    </message>
    <message>
        <source>删除选定页面</source>
        <translation>حذف الصفحات المحددة</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>تحديد الكل</translation>
    </message>
    <message>
        <source>选择全部页面</source>
        <translation>تحديد كل الصفحات</translation>
    </message>
    <message>
        <source>撤销</source>
        <translation>تراجع</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>إعادة</translation>
    </message>
    <message>
        <source>更多</source>
        <translation>المزيد</translation>
    </message>
    <message>
        <source>手形工具</source>
        <translation>أداة اليد</translation>
    </message>
    <message>
        <source>压缩</source>
        <translation>ضغط</translation>
    </message>
    <message>
        <source>PDF 转为 Office</source>
        <translation>‫PDF إلى Office‬</translation>
    </message>
    <message>
        <source>PDF 转为图像</source>
        <translation>‫PDF إلى صور‬</translation>
    </message>
    <message>
        <source>加密 PDF</source>
        <translation>‫تشفير PDF‬</translation>
    </message>
    <message>
        <source>解锁 PDF</source>
        <translation>‫إلغاء قفل PDF‬</translation>
    </message>
    <message>
        <source>页面编号</source>
        <translation>أرقام الصفحات</translation>
    </message>
    <message>
        <source>保存文件</source>
        <translation>حفظ الملف</translation>
    </message>
    <message>
        <source>将文件保存为…</source>
        <translation>‫حفظ الملف باسم…‬</translation>
    </message>
    <message>
        <source>打印</source>
        <translation>طباعة</translation>
    </message>
    <message>
        <source>在文件夹中显示</source>
        <translation>إظهار في المجلد</translation>
    </message>
</context>
<context>
    <name>PdfUndoManager</name>
    <message>
        <source>插入 PDF</source>
        <translation>‫إدراج PDF‬</translation>
    </message>
    <message>
        <source>插入空白页</source>
        <translation>إدراج صفحة فارغة</translation>
    </message>
    <message>
        <source>复制页面</source>
        <translation>تكرار الصفحات</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>حذف الصفحات</translation>
    </message>
    <message>
        <source>向左旋转页面</source>
        <translation>تدوير الصفحات إلى اليسار</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>تدوير الصفحات إلى اليمين</translation>
    </message>
    <message>
        <source>移动页面</source>
        <translation>نقل الصفحة</translation>
    </message>
</context>
<context>
    <name>SaveOption</name>
    <message>
        <source>替换原始文件</source>
        <translation>استبدال الملف الأصلي</translation>
    </message>
    <message>
        <source>保留原始文件</source>
        <translation>الاحتفاظ بالملف الأصلي</translation>
    </message>
</context>
<context>
    <name>SaveProgress</name>
    <message>
        <source>正在保存 PDF</source>
        <translation>‫جارٍ حفظ PDF‬</translation>
    </message>
    <message>
        <source>正在写入文件，大文件可能需要一些时间。</source>
        <translation>‫تجري كتابة الملف. قد تستغرق الملفات الكبيرة بعض الوقت.‬</translation>
    </message>
    <message>
        <source>保存完成前请不要关闭程序。</source>
        <translation>‫لا تغلق البرنامج قبل اكتمال الحفظ.‬</translation>
    </message>
</context>
<context>
    <name>TaskCenter</name>
    <message>
        <source>找不到文件或无法打开文件。</source>
        <translation>‫تعذّر العثور على الملف أو فتحه.‬</translation>
    </message>
    <message>
        <source>需要密码。</source>
        <translation>‫كلمة المرور مطلوبة.‬</translation>
    </message>
    <message>
        <source>密码不正确。</source>
        <translation>‫كلمة المرور غير صحيحة.‬</translation>
    </message>
    <message>
        <source>文件已损坏或不受支持。</source>
        <translation>‫الملف تالف أو غير مدعوم.‬</translation>
    </message>
    <message>
        <source>无法渲染页面。</source>
        <translation>‫تعذّر عرض إحدى الصفحات.‬</translation>
    </message>
    <message>
        <source>无法写入结果。</source>
        <translation>‫تعذّرت كتابة النتيجة.‬</translation>
    </message>
    <message>
        <source>图像已损坏或不受支持。</source>
        <translation>‫الصورة تالفة أو غير مدعومة.‬</translation>
    </message>
</context>
<context>
    <name>TaskListItem</name>
    <message>
        <source>打开文件</source>
        <translation>فتح الملف</translation>
    </message>
    <message>
        <source>打开所在文件夹</source>
        <translation>فتح المجلد</translation>
    </message>
    <message>
        <source>处理中...</source>
        <translation>جارٍ المعالجة…</translation>
    </message>
    <message>
        <source>已暂停</source>
        <translation>متوقف مؤقتًا</translation>
    </message>
    <message>
        <source>完成</source>
        <translation>تم</translation>
    </message>
    <message>
        <source>失败</source>
        <translation>فشل</translation>
    </message>
    <message>
        <source>已取消</source>
        <translation>أُلغي</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>重来</source>
        <translation>بدء جديد</translation>
    </message>
</context>
<context>
    <name>ThumbnailDelegate</name>
    <message>
        <source>正在生成缩略图…</source>
        <translation>جارٍ إنشاء الصورة المصغرة…</translation>
    </message>
    <message>
        <source>预览页面</source>
        <translation>معاينة الصفحة</translation>
    </message>
    <message>
        <source>向右旋转页面</source>
        <translation>تدوير الصفحة إلى اليمين</translation>
    </message>
    <message>
        <source>删除页面</source>
        <translation>حذف الصفحة</translation>
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
        <translation>إعدادات اللغة</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>تصغير</translation>
    </message>
    <message>
        <source>关闭</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>还原</source>
        <translation>استعادة</translation>
    </message>
    <message>
        <source>最大化</source>
        <translation>تكبير</translation>
    </message>
</context>
<context>
    <name>ToolOptionsPanel</name>
    <message>
        <source>文件位置</source>
        <translation>موقع الحفظ</translation>
    </message>
</context>
</TS>
