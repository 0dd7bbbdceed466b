algdata show damaged/unknown.txt damaged/algOutputStrategy.txt damaged/empty.txt
