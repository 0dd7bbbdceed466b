# A text instead of a number matches no condition, and is sorted last in both directions.
algdata show damaged/apNodeNotANumber.txt --columns plcUtilization
for test in 'plcUtilization>=0' 'plcUtilization<255' 'plcUtilization!=10'; do
    algdata show damaged/apNodeNotANumber.txt --columns plcUtilization --where "$test"
done
algdata show damaged/apNodeNotANumber.txt --columns plcUtilization --sort plcUtilization
algdata show damaged/apNodeNotANumber.txt --columns plcUtilization --sort=-plcUtilization
