<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>DemoTexts</name>
    <message>
        <source>%1 on %2, %3</source>
        <extracomment>The three parts are &quot;%n mark(s)&quot;, &quot;%n satellite(s)&quot; and &quot;%n action(s)&quot;.</extracomment>
        <translation>%2上的%1，%3</translation>
    </message>
    <message numerus="yes">
        <source>%n mark(s)</source>
        <translation>
            <numerusform>%n 个标记</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s)</source>
        <translation>
            <numerusform>%n 颗卫星</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n action(s)</source>
        <translation>
            <numerusform>%n 次操作</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No marks (%n action(s)). Drag over the bars to mark epochs.</source>
        <translation>
            <numerusform>没有标记（%n 次操作）。在条形上拖动以标记历元。</numerusform>
        </translation>
    </message>
    <message>
        <source>Applied: %1 (%2), %3, %4 ms.</source>
        <translation>已应用：%1（%2），%3，%4 毫秒。</translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) recomputed</source>
        <translation>
            <numerusform>重新计算了 %n 颗卫星</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) fewer</source>
        <translation>
            <numerusform>曲线点少了 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve sample(s) more</source>
        <translation>
            <numerusform>曲线点多了 %n 个</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n curve(s) hidden</source>
        <translation>
            <numerusform>隐藏了 %n 条曲线</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n satellite(s) enabled</source>
        <translation>
            <numerusform>%n 颗卫星中 %1 颗已启用</numerusform>
        </translation>
    </message>
    <message>
        <source>No satellite has code and phase on two bands: no multipath to show.</source>
        <translation>没有卫星在两个频段上同时有伪距和相位：没有可显示的多路径。</translation>
    </message>
    <message>
        <source>The file holds no epochs: nothing to show.</source>
        <translation>文件中没有历元：没有可显示的内容。</translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but every arc is shorter than %1 epochs: no multipath to show.</source>
        <translation>
            <numerusform>%n 颗卫星在两个频段上有伪距和相位，但每段弧都短于 %1 个历元：没有可显示的多路径。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n satellite(s) with code and phase on two bands, but never both phases at one epoch: no multipath to show.</source>
        <translation>
            <numerusform>%n 颗卫星在两个频段上有伪距和相位，但两个相位从未出现在同一历元：没有可显示的多路径。</numerusform>
        </translation>
    </message>
    <message>
        <source>The file records no signal strength (no S observations): nothing to show in dB-Hz.</source>
        <translation>文件没有记录信号强度（没有 S 观测值）：没有可显示的 dB-Hz 数据。</translation>
    </message>
    <message numerus="yes">
        <source>line %1: file ends inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：文件在%2中结束；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early, inside %2; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：压缩数据提前结束，位于%2中；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>line %1: the compressed data ends early; %n complete epoch(s) kept</source>
        <translation>
            <numerusform>第 %1 行：压缩数据提前结束；保留了 %n 个完整历元</numerusform>
        </translation>
    </message>
    <message>
        <source>MP%1 = %2/%3 with %4</source>
        <translation>MP%1 = %2/%3 与 %4</translation>
    </message>
    <message>
        <source>The file could not be read: %1</source>
        <translation>无法读取文件：%1</translation>
    </message>
    <message>
        <source>No navigation: open a broadcast navigation file (File &gt; Open navigation) to see where the satellites are.</source>
        <translation>没有导航数据：打开广播星历文件（文件 &gt; 打开导航文件）以查看卫星的位置。</translation>
    </message>
    <message>
        <source>The observations give no approximate position: no azimuth or elevation.</source>
        <translation>观测文件没有给出近似位置：无法计算方位角和高度角。</translation>
    </message>
    <message numerus="yes">
        <source>The navigation has no ephemeris for any of the %n observed satellite(s).</source>
        <translation>
            <numerusform>导航数据中没有 %n 颗已观测卫星中任何一颗的星历。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>No ephemeris for %n satellite(s): %1.</source>
        <translation>
            <numerusform>%n 颗卫星没有星历：%1。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n h</source>
        <translation>
            <numerusform>%n 小时</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 小时 %2 分钟</translation>
    </message>
    <message numerus="yes">
        <source>%n min</source>
        <translation>
            <numerusform>%n 分钟</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n s</source>
        <translation>
            <numerusform>%n 秒</numerusform>
        </translation>
    </message>
    <message>
        <source>Wheel: zoom Y.  Ctrl+wheel: zoom time.  Drag the plot: pan.  Double-click: whole file (%1).  Drag over the bars: mark epochs.  F: fit Y.</source>
        <translation>滚轮：缩放 Y。  Ctrl+滚轮：缩放时间。  拖动图表：平移。  双击：整个文件（%1）。  在条形上拖动：标记历元。  F：适配 Y。</translation>
    </message>
    <message numerus="yes">
        <source>Navigation: %n file(s) read</source>
        <translation>
            <numerusform>导航：已读取 %n 个文件</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Multipath</name>
    <message>
        <source>The curve needs two Y axes.</source>
        <translation>曲线需要两个 Y 轴。</translation>
    </message>
</context>
<context>
    <name>PictureTexts</name>
    <message>
        <source>%1 code multipath MP1 in metres, %2 GPST</source>
        <translation>%1 伪距多路径 MP1（米），%2 GPST</translation>
    </message>
    <message>
        <source>Code and phase of %1, phase of %2</source>
        <translation>%1 的伪距和相位，%2 的相位</translation>
    </message>
    <message>
        <source>%1: epoch availability per band, %2 to %3 GPST</source>
        <translation>%1：各频段历元可用性，%2 至 %3 GPST</translation>
    </message>
    <message>
        <source>%1: epoch availability per band: no epochs</source>
        <translation>%1：各频段历元可用性：没有历元</translation>
    </message>
</context>
<context>
    <name>PlotQuantityTexts</name>
    <message>
        <source>m</source>
        <translation>米</translation>
    </message>
    <message>
        <source>dB-Hz</source>
        <translation>dB-Hz</translation>
    </message>
    <message>
        <source>satellites</source>
        <translation>颗卫星</translation>
    </message>
    <message>
        <source>Code multipath</source>
        <translation>伪距多路径</translation>
    </message>
    <message>
        <source>Signal strength</source>
        <translation>信号强度</translation>
    </message>
    <message>
        <source>Satellites per epoch</source>
        <translation>每历元卫星数</translation>
    </message>
    <message>
        <source>band %1</source>
        <translation>频段 %1</translation>
    </message>
    <message>
        <source>Metres, each arc&apos;s mean removed; arcs end at cycle slips and gaps. F 1 shows MP1, F 2 MP2.</source>
        <translation>单位米，已去除每段弧的均值；弧段在周跳和间断处结束。F 1 显示 MP1，F 2 显示 MP2。</translation>
    </message>
    <message>
        <source>Carrier-to-noise density of each satellite&apos;s first two bands that record it. F 1 shows the first band, F 2 the second.</source>
        <translation>每颗卫星前两个记录了载噪比的频段的载噪比。F 1 显示第一个频段，F 2 显示第二个。</translation>
    </message>
    <message>
        <source>Satellites with a code or phase at each epoch, per system and in all.</source>
        <translation>每个历元有伪距或相位的卫星数，按系统及总计。</translation>
    </message>
</context>
<context>
    <name>RinexReader</name>
    <message>
        <source>a line</source>
        <translation>一行</translation>
    </message>
    <message>
        <source>an event record</source>
        <translation>事件记录</translation>
    </message>
    <message>
        <source>a cycle-slip record</source>
        <translation>周跳记录</translation>
    </message>
    <message>
        <source>an epoch&apos;s satellite records</source>
        <translation>历元的卫星记录</translation>
    </message>
    <message>
        <source>an epoch&apos;s satellite list</source>
        <translation>历元的卫星列表</translation>
    </message>
    <message>
        <source>an epoch&apos;s observation records</source>
        <translation>历元的观测记录</translation>
    </message>
    <message>
        <source>an epoch (no receiver clock line)</source>
        <translation>历元（缺少接收机钟差行）</translation>
    </message>
</context>
<context>
    <name>gnssdemo::DemoHost</name>
    <message>
        <source>No observations to load.</source>
        <translation>没有可加载的观测数据。</translation>
    </message>
    <message>
        <source>Out of memory while reading the observations.</source>
        <translation>读取观测数据时内存不足。</translation>
    </message>
</context>
<context>
    <name>gnssdemo::DemoWindow</name>
    <message>
        <source>gnssplot demo</source>
        <translation>gnssplot 演示</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>Fit Y</source>
        <translation>适配 Y</translation>
    </message>
    <message>
        <source>Fit Y to the data in the time window shown (F)</source>
        <translation>使 Y 适配所示时间窗口内的数据（F）</translation>
    </message>
    <message>
        <source>Show:</source>
        <translation>显示：</translation>
    </message>
    <message>
        <source>Show one satellite&apos;s curve alone, highlighted; satellites unchecked at the last Apply are not offered</source>
        <translation>单独并突出显示一颗卫星的曲线；上次应用时未勾选的卫星不在列表中</translation>
    </message>
    <message>
        <source>Sky</source>
        <translation>天空</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>质量</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Open RINEX file...</source>
        <translation>打开 RINEX 文件(&amp;O)...</translation>
    </message>
    <message>
        <source>Open &amp;navigation...</source>
        <translation>打开导航文件(&amp;N)...</translation>
    </message>
    <message>
        <source>Broadcast navigation for the satellites&apos; azimuth and elevation</source>
        <translation>用于计算卫星方位角和高度角的广播星历</translation>
    </message>
    <message>
        <source>&amp;Synthetic day</source>
        <translation>合成的一天(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>导出(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Curves as CSV...</source>
        <translation>曲线导出为 CSV(&amp;C)...</translation>
    </message>
    <message>
        <source>&amp;Sky tracks as CSV...</source>
        <translation>天空轨迹导出为 CSV(&amp;S)...</translation>
    </message>
    <message>
        <source>&amp;Marks as CSV...</source>
        <translation>标记导出为 CSV(&amp;M)...</translation>
    </message>
    <message>
        <source>Save &amp;curve picture...</source>
        <translation>保存曲线图片(&amp;C)...</translation>
    </message>
    <message>
        <source>Save table &amp;bars picture...</source>
        <translation>保存表格条形图片(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Fit Y to data</source>
        <translation>使 Y 适配数据(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Whole file</source>
        <translation>整个文件(&amp;W)</translation>
    </message>
    <message>
        <source>all</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>(left: F 1 = %1, right: F 2 = %2)</source>
        <translation>（左：F 1 = %1，右：F 2 = %2）</translation>
    </message>
    <message>
        <source>Loading %1...</source>
        <translation>正在加载 %1...</translation>
    </message>
    <message>
        <source>gnssplot demo - %1</source>
        <translation>gnssplot 演示 - %1</translation>
    </message>
    <message>
        <source>All satellites</source>
        <translation>所有卫星</translation>
    </message>
    <message>
        <source>%1 is unchecked in the table: check it and Apply to show its curve.</source>
        <translation>%1 在表格中未勾选：勾选并应用后才显示其曲线。</translation>
    </message>
    <message>
        <source>%1 (%2), %3 epochs; loaded in %4 ms</source>
        <translation>%1（%2），%3 个历元；加载用时 %4 毫秒</translation>
    </message>
    <message>
        <source> + first paint %1 ms</source>
        <translation> + 首次绘制 %1 毫秒</translation>
    </message>
    <message>
        <source>Navigation: %1</source>
        <translation>导航：%1</translation>
    </message>
    <message>
        <source>F %1: %2</source>
        <translation>F %1：%2</translation>
    </message>
    <message>
        <source>%1 %2 %3 GPST: %4 %5</source>
        <translation>%1 %2 %3 GPST：%4 %5</translation>
    </message>
    <message>
        <source>%1 %2 GPST: azimuth %3 deg, elevation %4 deg</source>
        <translation>%1 %2 GPST：方位角 %3°，高度角 %4°</translation>
    </message>
    <message>
        <source>Open RINEX observation file</source>
        <translation>打开 RINEX 观测文件</translation>
    </message>
    <message>
        <source>RINEX observations (*.rnx *.crx *.??o *.??O *.??d *.??D *.obs *.gz *.Z);;All files (*)</source>
        <translation>RINEX 观测文件 (*.rnx *.crx *.??o *.??O *.??d *.??D *.obs *.gz *.Z);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Cannot open the file</source>
        <translation>无法打开文件</translation>
    </message>
    <message>
        <source>Open navigation</source>
        <translation>打开导航文件</translation>
    </message>
    <message>
        <source>Open a RINEX observation file first: the satellites&apos; positions are seen from its station.</source>
        <translation>请先打开 RINEX 观测文件：卫星位置是从其测站看到的。</translation>
    </message>
    <message>
        <source>Open navigation files</source>
        <translation>打开导航文件</translation>
    </message>
    <message>
        <source>RINEX navigation (*.rnx *.??n *.??N *.??g *.??l *.??p *.nav *.gz *.Z);;All files (*)</source>
        <translation>RINEX 导航文件 (*.rnx *.??n *.??N *.??g *.??l *.??p *.nav *.gz *.Z);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Nothing is loaded.</source>
        <translation>尚未加载任何数据。</translation>
    </message>
    <message>
        <source>Cannot write %1.</source>
        <translation>无法写入 %1。</translation>
    </message>
    <message>
        <source>Export as CSV</source>
        <translation>导出为 CSV</translation>
    </message>
    <message>
        <source>CSV (*.csv)</source>
        <translation>CSV (*.csv)</translation>
    </message>
    <message>
        <source>Cannot save</source>
        <translation>无法保存</translation>
    </message>
    <message>
        <source>Cannot load the synthetic day</source>
        <translation>无法加载合成的一天</translation>
    </message>
    <message>
        <source>%1: %2 (%3), %4 GPST</source>
        <translation>%1：%2（%3），%4 GPST</translation>
    </message>
    <message>
        <source>Save curve picture</source>
        <translation>保存曲线图片</translation>
    </message>
    <message>
        <source>PNG (*.png)</source>
        <translation>PNG (*.png)</translation>
    </message>
    <message>
        <source>Save table bars picture</source>
        <translation>保存表格条形图片</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
</context>
<context>
    <name>gnssdemo::QualityPane</name>
    <message>
        <source>Satellite</source>
        <translation>卫星</translation>
    </message>
    <message>
        <source>Epochs</source>
        <translation>历元</translation>
    </message>
    <message>
        <source>Above mask</source>
        <translation>高于截止角</translation>
    </message>
    <message>
        <source>Complete %</source>
        <translation>完整率 %</translation>
    </message>
    <message>
        <source>MP1 RMS (m)</source>
        <translation>MP1 均方根（米）</translation>
    </message>
    <message>
        <source>MP2 RMS (m)</source>
        <translation>MP2 均方根（米）</translation>
    </message>
    <message>
        <source>Slips</source>
        <translation>周跳</translation>
    </message>
    <message>
        <source>LLI</source>
        <translation>失锁</translation>
    </message>
    <message>
        <source>Jumps</source>
        <translation>相位跳变</translation>
    </message>
    <message>
        <source>Gaps</source>
        <translation>间断</translation>
    </message>
    <message>
        <source>Epochs with the satellite 10 degrees or more above the horizon; - without navigation</source>
        <translation>卫星高于地平线 10 度及以上的历元数；无导航数据时为 -</translation>
    </message>
    <message>
        <source>Epochs with data among those above the mask</source>
        <translation>高于截止角的历元中有数据的比例</translation>
    </message>
    <message>
        <source>Loss of lock plus jumps of the geometry-free phase</source>
        <translation>失锁次数加无几何相位组合的跳变次数</translation>
    </message>
    <message>
        <source>all</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>all %1</source>
        <translation>全部 %1</translation>
    </message>
    <message>
        <source>Satellites per epoch (min/mean/max): %1</source>
        <translation>每历元卫星数（最小/平均/最大）：%1</translation>
    </message>
</context>
<context>
    <name>gnssdemo::ReadbackPanel</name>
    <message>
        <source>&lt;b&gt;What the host reads back&lt;/b&gt;</source>
        <translation>&lt;b&gt;宿主程序读回的内容&lt;/b&gt;</translation>
    </message>
    <message>
        <source>Enabled satellites</source>
        <translation>已启用的卫星</translation>
    </message>
    <message>
        <source>getStateliteEnabled(), read on sgStateliteSelection()</source>
        <translation>getStateliteEnabled()，在 sgStateliteSelection() 时读取</translation>
    </message>
    <message>
        <source>No satellites</source>
        <translation>没有卫星</translation>
    </message>
    <message>
        <source>Every satellite is checked.</source>
        <translation>所有卫星均已勾选。</translation>
    </message>
    <message>
        <source>Erase marks</source>
        <translation>删除标记</translation>
    </message>
    <message>
        <source>getStateliteEraseMarks(), read on sgEraseMarksChanged()</source>
        <translation>getStateliteEraseMarks()，在 sgEraseMarksChanged() 时读取</translation>
    </message>
    <message>
        <source>Drag over the bars to mark epochs.</source>
        <translation>在条形上拖动以标记历元。</translation>
    </message>
    <message>
        <source>Satellite</source>
        <translation>卫星</translation>
    </message>
    <message>
        <source>From</source>
        <translation>从</translation>
    </message>
    <message>
        <source>To (GPST)</source>
        <translation>到（GPST）</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>清除</translation>
    </message>
    <message>
        <source>clearEraseMarkActions()</source>
        <translation>clearEraseMarkActions()</translation>
    </message>
    <message>
        <source>undoEraseMarkAction()</source>
        <translation>undoEraseMarkAction()</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>应用</translation>
    </message>
    <message>
        <source>Remove the marked epochs from the observations, recompute their curves and hide the curves of unchecked satellites</source>
        <translation>从观测数据中删除已标记的历元，重新计算其曲线，并隐藏未勾选卫星的曲线</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Save curve picture...</source>
        <translation>保存曲线图片...</translation>
    </message>
    <message>
        <source>The plot as shown, at its size, with the station and its time axis</source>
        <translation>按所示大小保存图表，含测站名和时间轴</translation>
    </message>
    <message>
        <source>Save table bars picture...</source>
        <translation>保存表格条形图片...</translation>
    </message>
    <message>
        <source>CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice(), with the station and a time axis</source>
        <translation>CurveGraphicsTableWidget_Epoch::PaintAllLabelsToDevice()，含测站名和时间轴</translation>
    </message>
    <message>
        <source>Unchecked: %1</source>
        <translation>未勾选：%1</translation>
    </message>
</context>
<context>
    <name>gnssdemo::SkyPane</name>
    <message>
        <source>Colour: system</source>
        <translation>颜色：系统</translation>
    </message>
    <message>
        <source>Colour: signal strength, band 1</source>
        <translation>颜色：信号强度，频段 1</translation>
    </message>
    <message>
        <source>Colour: signal strength, band 2</source>
        <translation>颜色：信号强度，频段 2</translation>
    </message>
    <message>
        <source>Colour: |MP1|</source>
        <translation>颜色：|MP1|</translation>
    </message>
    <message>
        <source>Colour: |MP2|</source>
        <translation>颜色：|MP2|</translation>
    </message>
    <message>
        <source>What colours the tracks and fills the sky map</source>
        <translation>用于给轨迹着色并填充天空图的量</translation>
    </message>
    <message>
        <source>No sky map</source>
        <translation>无天空图</translation>
    </message>
    <message>
        <source>Sky map: mean</source>
        <translation>天空图：平均值</translation>
    </message>
    <message>
        <source>Sky map: RMS</source>
        <translation>天空图：均方根</translation>
    </message>
    <message>
        <source>Sky map: maximum</source>
        <translation>天空图：最大值</translation>
    </message>
    <message>
        <source>Fills each 5 degree cell of the sky with a figure of the values in it</source>
        <translation>用每个 5 度天空格网内数值的统计量填充该格网</translation>
    </message>
</context>
</TS>
